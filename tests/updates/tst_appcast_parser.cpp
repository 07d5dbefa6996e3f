#include "updates/appcast_parser.h"
#include "updates/notes_html.h"
#include "updates/release.h"
#include "updates/version_number.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;

namespace {

QByteArray item(const QByteArray &content)
{
    return "<item>" + content + "</item>";
}

QByteArray notes(const QByteArray &language, const QByteArray &url)
{
    const QByteArray mark = language.isEmpty() ? "" : " xml:lang='" + language + "'";
    return "<sparkle:releaseNotesLink" + mark + ">" + url + "</sparkle:releaseNotesLink>";
}

// "version|date|notes" of each entry.
QStringList entriesOf(const QByteArray &feed, const QStringList &languages = {u"en"_s})
{
    AppcastParser parser(languages);
    parser.parse(feed);
    QStringList lines;
    for (const AppcastEntry &each : parser.entries())
        lines << u"%1|%2|%3"_s.arg(each.version, each.date,
                                   each.notesURL ? each.notesURL->toString() : u"-"_s);
    return lines;
}

} // namespace

// What is made of a feed and of a page, good and bad.
class TestAppcastParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entries_data()
    {
        QTest::addColumn<QByteArray>("feed");
        QTest::addColumn<QStringList>("expected");
        const QByteArray enclosure = "<enclosure sparkle:shortVersionString='1.1'/>";
        const auto row = [](const char *name, const QByteArray &items, const QStringList &lines) {
            QTest::newRow(name) << "<rss><title>Feed</title>" + items + "</rss>" << lines;
        };
        row("the title where no version is told", item("<title> A &amp; B\n</title>"),
            {u"A & B||-"_s});
        row("the enclosure's version", item("<title>A</title>" + enclosure), {u"1.1||-"_s});
        row("the element before the enclosure",
            item(enclosure + "<sparkle:shortVersionString>1.2</sparkle:shortVersionString>"),
            {u"1.2||-"_s});
        row("an empty element",
            item(enclosure + "<sparkle:shortVersionString> </sparkle:shortVersionString>"),
            {u"1.1||-"_s});
        row("names without prefix, in the feed's order",
            item("<shortVersionString>2</shortVersionString><pubDate>Mon, 02 Nov</pubDate>"
                 "<releaseNotesLink>https://x/a b</releaseNotesLink>") +
                "<title>outside</title>" + item("<enclosure shortVersionString='1'/>"),
            {u"2|Mon, 02 Nov|https://x/a b"_s, u"1||-"_s});
        row("what no URL can be", item(notes("en", "http://[")), {u"||-"_s});
        row("what came before broken XML", item("<title>A</title>") + "<item><title>B</oops>",
            {u"A||-"_s});
        row("no external entity",
            "<!-- --></rss><!DOCTYPE x [<!ENTITY e SYSTEM 'file:///etc/passwd'>]>", {});
        QTest::newRow("no file's contents")
            << "<!DOCTYPE x [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><x>" +
                   item("<title>A&e;</title>") + "</x>"
            << QStringList{u"A||-"_s};
        QTest::newRow("an error page") << "<html><p>502<br></html>"_ba << QStringList();
    }

    void entries()
    {
        QFETCH(const QByteArray, feed);
        QTEST(entriesOf(feed), "expected");
    }

    void notesFollowTheUsersLanguages_data()
    {
        QTest::addColumn<QStringList>("user");
        QTest::addColumn<QByteArray>("offered");
        QTest::addColumn<QString>("chosen");
        const auto row = [](const char *user, const char *offered, const char *chosen) {
            QTest::addRow("%s of %s", user, offered)
                << QString::fromLatin1(user).split(u' ') << QByteArray(offered)
                << QString::fromLatin1(chosen);
        };
        row("ja", "zh-Hans ja -", "ja");
        row("en-GB", "zh-Hans ja -", "-");
        row("zh-TW", "zh-Hans zh-Hant ja en", "zh-Hant");
        row("zh-Hant-TW", "zh-Hans zh-Hant", "zh-Hant");
        row("zh-HK", "en zh-Hans zh-Hant", "zh-Hant");
        row("zh-CN", "en zh-Hant zh-Hans", "zh-Hans");
        row("fr-FR ja", "zh-Hans en ja", "ja");
        row("fr-FR", "zh-Hans - en", "-");
        row("fr-FR", "zh-Hans ja", "zh-Hans");
        row("C", "ja en", "en");
        row("de", "nonsense_ en", "en");
    }

    void notesFollowTheUsersLanguages()
    {
        QFETCH(const QStringList, user);
        QFETCH(const QByteArray, offered);
        QList<NoteLink> links;
        for (const QByteArray &each : offered.split(' '))
            links.append({each == "-" ? QString() : QString::fromLatin1(each),
                          u"https://x/"_s + QString::fromLatin1(each)});
        QFETCH(const QString, chosen);
        QCOMPARE(AppcastParser::bestNotesURL(links, user), QUrl(u"https://x/"_s + chosen));
        QCOMPARE(AppcastParser::bestNotesURL({}, user), std::nullopt);
    }

    void versionsAreOrderedByTheirNumbers()
    {
        const QStringList ascending{u"0.9"_s,    u"1.0-beta.2"_s, u"1.0-rc.1"_s, u"1.0-rc.10"_s,
                                    u"v1.0"_s,   u"1.0.1"_s,      u"1.9"_s,      u"1.10b1"_s,
                                    u"1.10+5"_s, u"2"_s};
        for (qsizetype i = 0; i < ascending.size(); ++i) {
            for (qsizetype j = 0; j < ascending.size(); ++j)
                QVERIFY2(compareVersions(ascending[i], ascending[j]) == (i <=> j),
                         qUtf8Printable(ascending[i] + u" and "_s + ascending[j]));
        }
        QVERIFY(compareVersions(u"1.0"_s, u"1"_s) == 0);
        QVERIFY(!isVersionNumber(u"Nivora"_s) && isVersionNumber(u"0.0"_s));
        QVERIFY(!isVersionNumber(u"0."_s + QString(100, u'9')));
        QVERIFY(!isVersionNumber(u"0.5\u202E evil"_s));
    }

    void theNewestReleaseForThisSystemIsFound()
    {
        const auto version = [](const QByteArray &number) {
            return "<sparkle:shortVersionString>" + number + "</sparkle:shortVersionString>";
        };
        const QByteArray feed =
            "<rss>" + item(version("1.0")) +
            item(version("1.2") + "<link>/releases/1.2</link>"
                                  "<enclosure url='https://elsewhere/n.deb' sparkle:os='linux' "
                                  "sparkle:edSignature='c2lnbmVk'/>") +
            item(version("1.1") + "<link>file:///etc/passwd</link>") +
            item(version("9.0") + "<sparkle:channel>beta</sparkle:channel>") +
            item(version("9.1") + "<enclosure url='n.dmg' sparkle:os='macos'/>") +
            item(version("9.2") +
                 "<sparkle:minimumSystemVersion>7</sparkle:minimumSystemVersion>") +
            "</rss>";
        const QUrl url(u"https://updates.example/dist/appcast.xml"_s);
        const auto answer = newerRelease(feed, url, u"1.0"_s, u"6.1.0-13-amd64"_s);
        const Release expected{
            u"1.2"_s, QUrl(u"https://updates.example/releases/1.2"_s),
            Release::Package{QUrl(u"https://elsewhere/n.deb"_s), /*isSigned=*/true}};
        QCOMPARE(answer.newer, expected);
        QCOMPARE(newerRelease(feed, url, u"1.0"_s, u"7.0"_s).newer->version, u"9.2"_s);
        QVERIFY(!newerRelease(feed, url, u"1.2"_s, u"6.1"_s).newer);
        const QByteArray cutOff = feed.left(feed.indexOf("1.2"));
        QCOMPARE(newerRelease(cutOff, url, u"0.1"_s, u"6"_s).newer,
                 (Release{u"1.0"_s, QUrl(), std::nullopt}));
        QVERIFY(!newerRelease("<html></html>", url, u"1"_s, u"6"_s).isFeed);
    }

    void hostileFeedsEndInTime_data()
    {
        QTest::addColumn<QByteArray>("feed");
        QTest::addColumn<int>("entries");
        QByteArray laughs = "<!DOCTYPE x [<!ENTITY a0 'ha'>";
        for (int i = 1; i < 30; ++i) {
            const QByteArray before = "&a" + QByteArray::number(i - 1) + ";";
            laughs += "<!ENTITY a" + QByteArray::number(i) + " '" + before.repeated(10) + "'>";
        }
        QTest::newRow("a billion laughs")
            << laughs + "]><x>" + item("<title>A</title>") + item("<title>&a29;</title>") << 1;
        QTest::newRow("100,000 releases")
            << "<x>" + item("<title>A</title>").repeated(100'000) << 2000;
        QTest::newRow("elements without end") << QByteArray("<item>").repeated(700'000) << 0;
        QTest::newRow("one long text")
            << "<x>" + item("<title>" + QByteArray(4'000'000, 'a') + "</title>") << 0;
        QByteArray tag = "<item ";
        for (int i = 0; i < 400'000; ++i)
            tag += 'a' + QByteArray::number(i) + "='' ";
        QTest::newRow("one tag of attributes") << tag << 0;
    }

    void hostileFeedsEndInTime()
    {
        QFETCH(const QByteArray, feed);
        QElapsedTimer time;
        time.start();
        QTEST(int(entriesOf(feed).size()), "entries");
        qInfo("%lld ms for %lld KiB", time.elapsed(), qint64(feed.size()) / 1024);
        QVERIFY(time.elapsed() < 5000);
    }

    void aPageKeepsItsTextAlone_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::addColumn<QString>("html");
        QTest::newRow("scripts, styles and handlers go")
            << "<html><head><title>T</title><style>p{color:red}</style></head><body onload=x()>"
               "<script>alert('<p>')</script><p style='color:red' onclick='x'>A &lt; B</p>"_ba
            << u"<p>A &lt; B</p>"_s;
        QTest::newRow("links to the web stay")
            << "<a href='/x'>a</a><a href='javascript:x()'>b</a><a href='file:///etc'>c</a>"_ba
            << u"<a href=\"/x\">a</a><a>b</a><a>c</a>"_s;
        QTest::newRow("sizes of small pictures stay")
            << "<img src='a.png' width=99999 height=9><img src='\"b' width=9 height=9>"_ba
            << u"<img src=\"a.png\" alt=\"\"><img src=\"&quot;b\" alt=\"\" width=\"9\" "
               "height=\"9\">"_s;
        QTest::newRow("tables stay flat")
            << "<table><tr><td colspan=99999999>a<table><tr><td>b</td></tr></table>c"_ba
            << u"<table><tr><td>a<br><br><br>bc</td></tr></table>"_s;
    }

    void aPageKeepsItsTextAlone()
    {
        QFETCH(const QByteArray, page);
        QTEST(readNotes(page, "text/html"_ba).html.remove(u'\n'), "html");
    }

    void aPagesLanguageAndLettersAreRead()
    {
        const Notes notes =
            readNotes("<html lang=ja><p>\x93\xfa\x96\x7b"_ba, "text/html; charset=Shift_JIS"_ba);
        QCOMPARE(notes.language, u"ja"_s);
        QCOMPARE(notes.html, u"<p>日本</p>"_s);
        QCOMPARE(readNotes("<p>日本"_ba, "text/html"_ba).html, u"<p>日本</p>"_s);
    }

    void hostilePagesAreCut_data()
    {
        QTest::addColumn<QByteArray>("piece");
        QTest::addColumn<QByteArray>("end");
        QTest::newRow("nested elements") << "<div>"_ba
                                         << ""_ba;
        QTest::newRow("nested tables") << "<table><tr><td>"_ba
                                       << ""_ba;
        QTest::newRow("ends of what was never begun")
            << "<b>x"_ba << QByteArray("</i>").repeated(9'999);
        QTest::newRow("rows") << "<tr><td>x</td></tr>"_ba
                              << ""_ba;
        QTest::newRow("text") << "all work and no play "_ba
                              << ""_ba;
    }

    void hostilePagesAreCut()
    {
        QFETCH(const QByteArray, piece);
        QFETCH(const QByteArray, end);
        QElapsedTimer time;
        time.start();
        const QByteArray page = "<table>" + piece.repeated(10'000'000 / piece.size()) + end;
        const QString html = readNotes(page, {}).html;
        qInfo("%lld ms", time.elapsed());
        QVERIFY(time.elapsed() < 5000);
        QVERIFY2(html.size() < 300'000, qPrintable(QString::number(html.size())));
        QVERIFY(html.count(u"</"_s) < 4100);
    }
};

QTEST_APPLESS_MAIN(TestAppcastParser)

#include "tst_appcast_parser.moc"
