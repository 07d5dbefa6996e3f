#include "app/interface_language.h"

#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;

class TestInterfaceLanguage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theInterfaceHasALanguage_data()
    {
        QTest::addColumn<QStringList>("languages");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("desktop");
        QTest::addColumn<QString>("locale");
        const auto row = [](const QStringList &languages, const QString &code,
                            const QString &desktop, const QString &locale) {
            QTest::newRow(qPrintable(languages.join(u' ')))
                << languages << code << desktop << locale;
        };
        row({u"ja"_s, u"en-US"_s}, u"ja"_s, u"en_US"_s, u"ja_JP"_s);
        row({u"de-DE"_s, u"zh-TW"_s, u"en"_s}, u"zh-Hant"_s, u"de_DE"_s, u"zh_TW"_s);
        row({u"zh-HK"_s}, u"zh-Hant"_s, u"zh_HK"_s, u"zh_HK"_s);
        row({u"zh-SG"_s}, u"zh-Hans"_s, u"zh_SG"_s, u"zh_SG"_s);
        row({u"zh-Hant-CN"_s}, u"zh-Hant"_s, u"zh_CN"_s, u"zh_TW"_s);
        row({u"de-DE"_s, u"C"_s}, u"en"_s, u"de_DE"_s, u"en_DE"_s);
        row({u"Klingon"_s, u"ja-JP"_s}, u"ja"_s, u"C"_s, u"ja_JP"_s);
    }

    void theInterfaceHasALanguage()
    {
        QFETCH(const QStringList, languages);
        QFETCH(const QString, desktop);
        const QString language = interfaceLanguage(languages);
        QTEST(language, "language");
        QTEST(interfaceLocale(language, QLocale(desktop)).name(), "locale");
    }
};

QTEST_GUILESS_MAIN(TestInterfaceLanguage)
#include "tst_interface_language.moc"
