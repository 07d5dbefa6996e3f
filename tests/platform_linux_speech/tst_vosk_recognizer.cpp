// The loader, and what is asked of the library, against one of the test's own.

#include "platform_linux_speech/speech_offline_recognizer.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using linuxdesktop::OfflineSpeechRecognizer;
using Result = platform::RecognitionResult;

namespace {

const QString whole = QStringLiteral(FAKE_VOSK);
const QString lacking = QStringLiteral(LACKING_VOSK);

QByteArray soundOf(double seconds)
{
    return QByteArray(qsizetype(seconds * 16000) * 2, '\1');
}

} // namespace

class TestVoskRecognizer : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    QList<Result> m_results;

    std::unique_ptr<platform::SpeechRecognition> recognize(OfflineSpeechRecognizer &recognizer,
                                                           const QString &locale)
    {
        m_results.clear();
        return recognizer.recognize(locale,
                                    [this](const Result &result) { m_results.append(result); });
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QDir(m_folder.path()).mkpath(u"zh-CN/am"_s));
        QVERIFY(QDir(m_folder.path()).mkpath(u"ja-JP"_s)); // a model without its files
    }

    void isThereOnlyWithLibraryAndModel_data()
    {
        QTest::addColumn<QString>("library");
        QTest::addColumn<QString>("locale");
        QTest::addColumn<bool>("hasModel");
        QTest::addColumn<QByteArray>("warning");
        QTest::newRow("both") << whole << u"zh-CN"_s << true << ""_ba;
        QTest::newRow("no model") << whole << u"ko-KR"_s << false << ""_ba;
        QTest::newRow("English without PocketSphinx") << whole << u"en-US"_s << false << ""_ba;
        QTest::newRow("no library") << u"/nowhere/libvosk.so"_s << u"zh-CN"_s << true << ""_ba;
        QTest::newRow("a library that lacks a function")
            << lacking << u"zh-CN"_s << true
            << "The Vosk library has no function vosk_set_log_level: it is not used"_ba;
    }

    void isThereOnlyWithLibraryAndModel()
    {
        QFETCH(const QString, library);
        QFETCH(const QString, locale);
        QFETCH(const bool, hasModel);
        QFETCH(const QByteArray, warning);
        OfflineSpeechRecognizer recognizer({u"/nowhere"_s, m_folder.path(), library});
        if (!warning.isEmpty())
            QTest::ignoreMessage(QtWarningMsg, warning.constData());
        const auto recognition = recognize(recognizer, locale);
        QCOMPARE(recognition != nullptr, hasModel);
        if (!recognition)
            return;
        recognition->endAudio();
        QTRY_COMPARE(m_results.size(), 1);
        QCOMPARE(m_results[0].failure,
                 library == whole ? Result::Failure::None : Result::Failure::Unavailable);
    }

    void tellsTheWholeTextAcrossPauses()
    {
        OfflineSpeechRecognizer recognizer({u"/nowhere"_s, m_folder.path(), whole});
        const auto recognition = recognize(recognizer, u"zh-CN"_s);
        QVERIFY(recognition);
        recognition->append(soundOf(0.25));
        QTRY_COMPARE(m_results.size(), 1);
        QCOMPARE(m_results[0], (Result{u"你好你好"_s}));
        recognition->append(soundOf(0.8)); // past the pause
        QTRY_COMPARE(m_results.size(), 2);
        QCOMPARE(m_results[1], (Result{u"你好"_s.repeated(10)}));
        recognition->append(soundOf(0.1));
        recognition->endAudio();
        recognition->append(soundOf(5)); // too late
        QTRY_VERIFY(m_results.back().isFinal);
        QCOMPARE(m_results.back().text, u"你好"_s.repeated(11));
    }

    void failuresAreToldAndGivingUpIsSilent()
    {
        OfflineSpeechRecognizer recognizer({u"/nowhere"_s, m_folder.path(), whole});
        auto recognition = recognize(recognizer, u"ja-JP"_s);
        QTRY_COMPARE(m_results.size(), 1);
        QCOMPARE(m_results[0].failure, Result::Failure::Model);

        recognition = recognize(recognizer, u"zh-CN"_s);
        recognition->append("\xff\x7f"_ba);
        QTRY_COMPARE(m_results.size(), 1);
        QCOMPARE(m_results[0].failure, Result::Failure::Engine);

        recognition = recognize(recognizer, u"zh-CN"_s);
        recognition->append(soundOf(60));
        recognition->endAudio();
        recognition.reset();
        // The next one's answer comes after all that the last could have said.
        recognition = recognize(recognizer, u"zh-CN"_s);
        recognition->endAudio();
        QTRY_COMPARE(m_results.size(), 1);
        QCOMPARE(m_results[0], (Result{{}, true}));
    }
};

QTEST_GUILESS_MAIN(TestVoskRecognizer)
#include "tst_vosk_recognizer.moc"
