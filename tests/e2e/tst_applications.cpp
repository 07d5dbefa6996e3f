#include "road.h"

#include "support/application.h"
#include "support/browser.h"

#include "localcloud/event_stream.h"

#include <QTest>

#include <X11/keysym.h>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using namespace nivora::test;

using Maker = std::function<std::unique_ptr<Application>(const Application::Desk &)>;

namespace {

constexpr int tallestSelection = 120;
constexpr int tallestField = 400;
constexpr int gapToSelection = 6;
constexpr int gapToPointer = 12;
constexpr int screenMargin = 8;
const QSize screenSize = DesktopSession::Options().screenSize;
constexpr QPoint pointer{300, 500};

const QString translation = u"訳文：一行目 🎈"_s;

const std::vector<ClipboardPeer::Offer> usersClipboard{
    {"UTF8_STRING", "from before"},
    {"text/html", "<i>from before</i>"},
    {"application/x-binary", QByteArray::fromHex("00ff10000a0d00")},
};

// Programs have line ends of their own, and xterm drops the joiners within an
// emoji.
QString plain(QString text)
{
    return text.replace(u"\r\n"_s, u"\n"_s).remove(QChar(0x200d));
}

template<Browser::Kind kind>
std::unique_ptr<Application> makeBrowser(const Application::Desk &desk)
{
    return std::make_unique<Browser>(desk, kind);
}

QString longText(QChar separator)
{
    QString text;
    for (int line = 0; text.size() < 20'000; ++line)
        text += u"第%1句：这一段很长，要完整地翻译。"_s.arg(line) + separator;
    return text.first(19'999) + u'。';
}

QPoint onScreen(const QPoint &anchor, const QSize &panel)
{
    const QSize room = screenSize - panel - QSize(screenMargin, screenMargin);
    return {std::clamp(anchor.x(), screenMargin, room.width()),
            std::clamp(anchor.y(), screenMargin, room.height())};
}

} // namespace

// What the product makes of real programs: one row for each program and kind of
// text. The rows of one program share its desktop.
class TestApplications : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void translatesAndPutsBack_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<Maker>("make");
        QTest::addColumn<QString>("text"); // null for nothing selected
        const struct
        {
            const char *name;
            Maker make;
            bool isTerminal = false;
        } programs[]{
            {"Mousepad", makeMousepad},
            {"FocusWriter", makeFocusWriter},
            {"FeatherPad", makeFeatherPad},
            {"xterm", makeXTerm, true},
            {"Xfce Terminal", makeXfceTerminal, true},
            {"Firefox", makeBrowser<Browser::Kind::Firefox>},
            {"Chromium", makeBrowser<Browser::Kind::Chromium>},
            {"accessible Chromium", makeBrowser<Browser::Kind::AccessibleChromium>},
        };
        const std::pair<const char *, QString> texts[]{
            {"Chinese", u"请发一下报价，谢谢！"_s},
            {"emoji", u"好👍🏽的👩‍👩‍👧‍👦🎈 café"_s},
            {"lines", u"第一行\n第二行\n\n第四行"_s},
            {"lines of another system", u"甲行\r\n乙行\r\n丙行"_s},
            {"blanks", u"  　  "_s},
            {"nothing", QString()},
        };
        for (const auto &[name, make, isTerminal] : programs) {
            const auto program = QString::fromLatin1(name);
            for (const auto &[kind, text] : texts)
                QTest::addRow("%s: %s", name, kind) << program << make << text;
            // A terminal lets one select what it shows, or a line of any length.
            QTest::addRow("%s: 20,000 characters", name)
                << program << make << longText(isTerminal ? u' ' : u'\n');
        }
    }

    void translatesAndPutsBack()
    {
        QFETCH(const QString, name);
        QFETCH(const Maker, make);
        QFETCH(const QString, text);
        QVERIFY(enter(name, make));
        Road &road = *m_road;
        const bool hasText = !text.trimmed().isEmpty();

        QVERIFY2(m_application->show(text.isNull() ? u"甲乙丙"_s : text), "the text is not shown");
        if (text.isNull()) {
            QVERIFY2(m_application->deselect(), "the cursor is not in its place");
        } else {
            QVERIFY2(m_application->select(),
                     qUtf8Printable(m_application->selectedText().left(200)));
            QCOMPARE(plain(m_application->selectedText()), plain(text));
        }
        const QString before = m_application->content();
        const QPoint place = anchor();
        QVERIFY(road.clipboard->offer(usersClipboard));
        road.user->movePointer(pointer);
        const auto requests = road.server.requests().size();
        road.server.enqueue(localcloud::eventStream({translation}));

        road.pull(Trigger::DoubleShift);
        QVERIFY(road.product->waitForPanel(patience));
        if (hasText) {
            QVERIFY(road.waitForRequests(requests + 1));
            const QString sent = m_application->selectedText().trimmed();
            QVERIFY(road.prompt(requests).endsWith(u"\n\n"_s + sent));
        } else {
            const auto source = road.product->waitForControl(u"原文"_s, patience);
            QVERIFY(source && source->text().isEmpty());
            QVERIFY(waitUntil([&] { return source->isFocused(); }, patience));
            road.user->press({XK_x});
            QVERIFY(waitUntil([&] { return source->text() == u"x"_s; }, patience));
            QCOMPARE(road.server.requests().size(), requests);
            road.user->press({XK_Control_L, XK_Return});
        }
        QVERIFY(road.product->waitForTranslation(translation, patience));
        const auto panel = [&] {
            return road.user->find(Product::panel()).value_or(X11Driver::Window()).geometry;
        };
        QVERIFY2(waitUntil([&] { return panel().topLeft() == onScreen(place, panel().size()); },
                           patience),
                 qUtf8Printable(QDebug::toString(panel()) + u" instead of "_s +
                                QDebug::toString(onScreen(place, panel().size()))));

        using Paste = Application::Paste;
        const auto paste = m_application->paste();
        const bool replaces = hasText && paste == Paste::ReplacesSelection;
        const bool inserts = !hasText && paste != Paste::Unknown;
        QCOMPARE(holds(u"Ctrl+↩ 替换原文"_s), replaces);
        QCOMPARE(holds(u"Ctrl+↩ 插入到输入框"_s), inserts);
        if (!replaces && !inserts) {
            takeResultByHand();
            QCOMPARE(m_application->content(), before);
            return;
        }
        road.user->press({XK_Control_L, XK_Return});
        QVERIFY(road.product->waitForPanelGone(patience));
        const QString after = text.isNull() ? translation + before : translation;
        QVERIFY2(waitUntil([&] { return m_application->content() == after; }, patience),
                 qUtf8Printable(m_application->content().left(200)));
        verifyUsersClipboard();
        QCOMPARE(road.user->activeWindow(), m_application->window());
    }

    // It lets nobody copy: what is pressed in the panel must not make its selection old.
    void aTerminalsSelectionIsReadAgainAfterEsc()
    {
        QVERIFY(enter(u"xterm"_s, makeXTerm));
        Road &road = *m_road;
        QVERIFY(m_application->show(u"send the offer"_s) && m_application->select());
        const auto requests = road.server.requests().size();
        for (int i = 0; i < 3; ++i) {
            road.server.enqueue(localcloud::Answer::silence());
            road.pull(Trigger::DoubleShift);
            QVERIFY(road.waitForRequests(requests + i + 1));
            QVERIFY(road.product->waitForPanel(patience));
            road.user->press({XK_Escape});
            QVERIFY(road.product->waitForPanelGone(patience));
        }
    }

    // One row's failure is not the next one's.
    void cleanup()
    {
        if (QTest::currentTestFailed())
            leave();
        else if (m_road)
            m_road->server.dropAnswers();
    }

    void cleanupTestCase() { leave(); }

private:
    bool enter(const QString &name, const Maker &make)
    {
        if (m_application && m_name == name)
            return true;
        leave();
        m_name = name;
        m_road = std::make_unique<Road>();
        if (!m_road->begin())
            return false;
        m_application = make({m_road->session, *m_road->user, *m_road->tree, *m_road->clipboard});
        if (m_application->open())
            return true;
        m_application.reset();
        return false;
    }

    void leave()
    {
        m_application.reset();
        m_road.reset();
    }
    // Below what is selected, or below the field, or else at the pointer.
    QPoint anchor() const
    {
        for (const auto &[near, tallest] : {std::pair(m_application->place(), tallestSelection),
                                            std::pair(m_application->frame(), tallestField)}) {
            if (near.height() > 0 && near.height() <= tallest)
                return {near.x(), near.y() + near.height() + gapToSelection};
        }
        return pointer + QPoint(0, gapToPointer);
    }

    bool holds(const QString &name) const { return m_road->product->control(name).has_value(); }
    // Where the program takes nothing, the user copies the result.
    void takeResultByHand()
    {
        const auto copy = m_road->product->control(u"复制译文"_s);
        QVERIFY(copy && copy->press());
        QVERIFY(waitUntil([&] { return m_road->clipboard->text() == translation; }, patience));
        m_road->user->press({XK_Escape});
        QVERIFY(m_road->product->waitForPanelGone(patience));
        QVERIFY(m_road->user->waitForActive(m_application->window(), patience));
    }
    void verifyUsersClipboard()
    {
        const auto isBack = [&] {
            return std::ranges::all_of(usersClipboard, [&](const ClipboardPeer::Offer &offer) {
                return m_road->clipboard->read(offer.format) == offer.data;
            });
        };
        QVERIFY2(waitUntil(isBack, patience), m_road->clipboard->formats().join(' ').constData());
    }

    QString m_name;
    std::unique_ptr<Road> m_road;
    std::unique_ptr<Application> m_application;
};

QTEST_GUILESS_MAIN(TestApplications)
#include "tst_applications.moc"
