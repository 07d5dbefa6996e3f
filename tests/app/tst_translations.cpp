#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Message
{
    QString key; // context, source and comment
    QString source;
    QStringList forms; // one, or as many as the language has plurals
};

// Empty when one of the texts is not translated.
QList<Message> read(const QString &path)
{
    QFile file(path);
    QList<Message> messages;
    if (!file.open(QIODevice::ReadOnly))
        return messages;
    QXmlStreamReader xml(&file);
    QString context;
    bool isPlural = false;
    bool isFinished = true;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == u"name") {
            context = xml.readElementText();
        } else if (xml.name() == u"message") {
            messages.append({context, {}, {}});
            isPlural = xml.attributes().hasAttribute(u"numerus"_s);
        } else if (xml.name() == u"source") {
            messages.last().source = xml.readElementText();
            messages.last().key += u'|' + messages.last().source;
        } else if (xml.name() == u"comment") {
            messages.last().key += u'|' + xml.readElementText();
        } else if (xml.name() == u"translation" || xml.name() == u"numerusform") {
            isFinished = isFinished && !xml.attributes().hasAttribute(u"type"_s);
            if (isPlural == (xml.name() == u"numerusform"))
                messages.last().forms.append(xml.readElementText());
        }
    }
    return isFinished ? messages : QList<Message>();
}

QStringList keys(const QList<Message> &messages)
{
    QStringList all;
    for (const Message &each : messages)
        all.append(each.key);
    all.sort();
    return all;
}

// What a translation has to take over, in whatever order.
QStringList placeholders(const QString &text)
{
    static const QRegularExpression pattern(uR"(%\d|%n|\{\{\w+\}\}|\(\*[^)]*\)|\*\*)"_s);
    QStringList all;
    for (const auto &match : pattern.globalMatch(text))
        all.append(match.captured());
    all.sort();
    return all;
}

} // namespace

// The catalogues of the interface's texts, against the sources and each other.
class TestTranslations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const QString path = m_folder.filePath(u"fresh.ts"_s);
        QProcess lupdate;
        lupdate.start(QStringLiteral(NIVORA_LUPDATE),
                      {u"-silent"_s, u"-locations"_s, u"none"_s,
                       QStringLiteral(NIVORA_SOURCES) + u"/src"_s, u"-ts"_s, path});
        QVERIFY(lupdate.waitForFinished(60'000));
        // It complains of texts that no class of that name will look up.
        QCOMPARE(QString::fromUtf8(lupdate.readAllStandardError()), QString());
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        const QByteArray content = file.readAll().replace(" type=\"unfinished\"", {});
        QVERIFY(file.seek(0) && file.resize(0) && file.write(content) == content.size());
        file.close();
        m_texts = keys(read(path));
        QVERIFY(m_texts.size() > 300);
    }

    void everyTextIsTranslated_data()
    {
        QTest::addColumn<QString>("catalogue");
        QTest::addColumn<int>("plurals");
        QTest::addColumn<QByteArray>("charset"); // holds the characters that the script has
        QTest::newRow("zh-Hans") << u"zh_Hans"_s << 1 << "GBK"_ba;
        QTest::newRow("zh-Hant") << u"zh_Hant"_s << 1 << "Big5"_ba;
        QTest::newRow("ja") << u"ja"_s << 1 << "Shift_JIS"_ba;
        QTest::newRow("en") << u"en"_s << 2 << "US-ASCII"_ba;
    }
    void everyTextIsTranslated()
    {
        QFETCH(const QString, catalogue);
        QFETCH(const QByteArray, charset);
        const QList<Message> messages =
            read(QStringLiteral(NIVORA_SOURCES) +
                 u"/resources/translations/nivora_%1.ts"_s.arg(catalogue));
        // `update_translations` brings them together again.
        QCOMPARE(keys(messages), m_texts);
        QStringEncoder encoder(charset);
        QVERIFY(encoder.isValid());
        for (const Message &message : messages) {
            if (message.forms.size() > 1)
                QTEST(int(message.forms.size()), "plurals");
            for (const QString &form : message.forms) {
                QVERIFY2(!form.isEmpty(), qUtf8Printable(message.key));
                QCOMPARE(placeholders(form), placeholders(message.source));
                // Languages to choose from stand in their own words.
                if (message.key.startsWith(u"nivora::SettingsGeneralTab|") && isOwnName(form))
                    continue;
                const QByteArray bytes = encoder(onlyEastAsian(form));
                QVERIFY2(!encoder.hasError() && !bytes.contains('?'), qUtf8Printable(form));
            }
        }
    }

private:
    static bool isOwnName(const QString &text)
    {
        return QStringList{u"简体中文"_s, u"繁體中文"_s, u"日本語"_s}.contains(text);
    }
    static QString onlyEastAsian(QString text)
    {
        static const QRegularExpression others(
            uR"([^\p{Han}\p{Hiragana}\p{Katakana}\x{3000}-\x{303F}\x{FF00}-\x{FFEF}])"_s);
        return text.remove(others);
    }

    QTemporaryDir m_folder;
    QStringList m_texts;
};

QTEST_GUILESS_MAIN(TestTranslations)
#include "tst_translations.moc"
