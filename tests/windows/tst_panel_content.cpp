#include "panel_test.h"

#include "core/feedback_service.h"

#include <QComboBox>
#include <QInputMethodEvent>
#include <QPlainTextEdit>

using namespace nivora;
using namespace nivora::test;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using localcloud::eventStream;

namespace {
const auto pinButton = u"钉住"_s;
const auto closeButton = u"关闭面板"_s;
const auto contextButton = u"背景"_s;
const auto microphoneButton = u"语音输入"_s;
const auto speakButton = u"朗读"_s;
const auto copyButton = u"复制译文"_s;
const auto variantsButton = u"更多译文"_s;
const auto feedbackButton = u"反馈译文问题"_s;

// What becomes of a text that is given to the panel.
enum class Outcome { Nothing, Translated, Failed, Waiting };

struct Situation
{
    PanelMode mode = PanelMode::Selection;
    QString source = {};
    bool hasInsertTarget = true;
    bool live = false;
    Outcome outcome = Outcome::Nothing;
    QString answer = {};
    bool takesFeedback = false;
};

} // namespace

// What the panel shows when.
class TestPanelContent : public PanelTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }

    void eachStateHasItsControls_data()
    {
        QTest::addColumn<Situation>("situation");
        QTest::addColumn<QStringList>("controls"); // in the order of Tab, but for the direction
        using enum Outcome;
        constexpr auto compose = PanelMode::Compose;
        constexpr auto reply = PanelMode::Reply;
        const auto chinese = u"请发一下报价"_s;
        const auto japanese = u"見積もりをください"_s;

        QTest::newRow("a selection is under way")
            << Situation{.source = chinese, .outcome = Waiting}
            << QStringList{pinButton, closeButton};
        QTest::newRow("a selection failed") << Situation{.source = chinese, .outcome = Failed}
                                            << QStringList{pinButton, closeButton, u"重试"_s};
        QTest::newRow("into Japanese, can replace")
            << Situation{.source = chinese, .outcome = Translated, .answer = japanese}
            << QStringList{pinButton,   closeButton, u"⌘↩ 替换原文"_s,
                           speakButton, copyButton,  variantsButton};
        QTest::newRow("into Japanese, takes feedback")
            << Situation{.source = chinese,
                         .outcome = Translated,
                         .answer = japanese,
                         .takesFeedback = true}
            << QStringList{pinButton,  closeButton,    u"⌘↩ 替换原文"_s, speakButton,
                           copyButton, variantsButton, feedbackButton};
        QTest::newRow("the user's own language, nothing to replace")
            << Situation{.source = chinese,
                         .hasInsertTarget = false,
                         .outcome = Translated,
                         .answer = japanese}
            << QStringList{pinButton, closeButton, speakButton, copyButton, variantsButton};
        QTest::newRow("a foreign language, nothing to replace")
            << Situation{.source = u"Please send the quotation."_s,
                         .hasInsertTarget = false,
                         .outcome = Translated,
                         .answer = chinese}
            << QStringList{pinButton, closeButton, u"以对方原文为背景，撰写并翻译你的回复"_s,
                           speakButton, copyButton};
        QTest::newRow("compose, nothing typed, not live")
            << Situation{.mode = compose}
            << QStringList{contextButton, pinButton, closeButton, microphoneButton, u"翻译"_s};
        QTest::newRow("compose, nothing typed, live")
            << Situation{.mode = compose, .live = true}
            << QStringList{contextButton, pinButton, closeButton, microphoneButton};
        QTest::newRow("compose, under way")
            << Situation{.mode = compose, .source = chinese, .outcome = Waiting}
            << QStringList{contextButton, pinButton, closeButton, microphoneButton, u"翻译中…"_s};
        QTest::newRow("compose, can insert")
            << Situation{.mode = compose,
                         .source = chinese,
                         .outcome = Translated,
                         .answer = japanese}
            << QStringList{contextButton,        pinButton,   closeButton, microphoneButton,
                           u"⌘↩ 插入到输入框"_s, speakButton, copyButton,  variantsButton};
        QTest::newRow("compose, nowhere to insert")
            << Situation{.mode = compose,
                         .source = chinese,
                         .hasInsertTarget = false,
                         .outcome = Translated,
                         .answer = japanese}
            << QStringList{contextButton, pinButton,   closeButton, microphoneButton,
                           u"⌘↩ 复制"_s,  speakButton, copyButton,  variantsButton};
        QTest::newRow("reply") << Situation{.mode = reply,
                                            .source = chinese,
                                            .outcome = Translated,
                                            .answer = japanese}
                               << QStringList{contextButton,
                                              pinButton,
                                              closeButton,
                                              microphoneButton,
                                              u"⌘↩ 复制，粘到回复框"_s,
                                              speakButton,
                                              copyButton,
                                              variantsButton};
    }

    void eachStateHasItsControls()
    {
        QFETCH(const Situation, situation);
        enter(situation);
        QStringList shown = buttons();
        QVERIFY2(shown.takeFirst().contains(u" → "), qUtf8Printable(shown.join(u'|')));
        QTEST(shown, "controls");
        QVERIFY(m_controller->panel()->grab().size().isValid());
    }

    void theFocusFollowsTheWork()
    {
        enter({.source = u"报价"_s, .outcome = Outcome::Failed});
        QVERIFY(m_controller->panel()->hasFocus()); // there is no translation
        m_server->enqueue(eventStream({u"見積もり"_s}));
        button(u"重试"_s)->setFocus();
        QTest::keyClick(button(u"重试"_s), Qt::Key_Return);
        QVERIFY(m_controller->panel()->hasFocus());
        QTRY_VERIFY(named(u"译文"_s) && named(u"译文"_s)->hasFocus());

        enter({.mode = PanelMode::Compose, .source = u"报价"_s});
        QVERIFY(named(u"原文"_s)->hasFocus());
        m_server->enqueue(localcloud::Answer::silence());
        button(u"翻译"_s)->setFocus();
        QTest::keyClick(button(u"翻译"_s), Qt::Key_Return);
        QVERIFY(!button(u"翻译中…"_s)->isEnabled());
        QVERIFY(named(u"原文"_s)->hasFocus());
    }

    void theBackgroundIsEditedInAPopover()
    {
        enter({.mode = PanelMode::Compose});
        button(contextButton)->click();
        auto *editor = named<QPlainTextEdit>(u"背景（可选，如对方的消息）"_s);
        QVERIFY(editor && QTest::qWaitForWindowActive(editor->window()));
        QVERIFY(m_controller->panel()->isVisible());
        QTest::keyClicks(editor, u"hi"_s);
        QTest::keyClick(editor, Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(m_session->contextText(), u"hi\n"_s);
        button(u"清除"_s)->click();
        QCOMPARE(m_session->contextText(), QString());
        QTest::keyClicks(editor, u"yo"_s);
        QTest::keyClick(editor, Qt::Key_Return);
        QVERIFY(!editor->isVisible() && m_controller->panel()->isVisible());
        QCOMPARE(m_session->contextText(), u"yo"_s);

        button(contextButton)->click();
        QVERIFY(editor->isVisible());
        QTest::keyClick(editor, Qt::Key_Escape);
        QVERIFY(!editor->isVisible() && m_controller->panel()->isVisible());
    }

    void feedbackIsSentAndThankedFor_data()
    {
        QTest::addColumn<bool>("taken");
        QTest::addColumn<QString>("line");
        QTest::addColumn<Qt::KeyboardModifier>("modifier");
        QTest::newRow("taken") << true << u"已提交，感谢反馈"_s << Qt::NoModifier;
        QTest::newRow("refused") << false << u"提交失败，请稍后再试"_s << Qt::NoModifier;
        // The panel's key for its own action, which is not what is meant here.
        QTest::newRow("by Control and Return")
            << true << u"已提交，感谢反馈"_s << Qt::ControlModifier;
    }

    void feedbackIsSentAndThankedFor()
    {
        QFETCH(const bool, taken);
        QFETCH(const QString, line);
        QFETCH(const Qt::KeyboardModifier, modifier);
        int inserted = 0;
        m_session->insertHandler = [&](const QString &) { ++inserted; };
        QStringList sent;
        std::function<void(bool)> answer;
        m_session->feedbackHandler = [&](const FeedbackReport &report, auto done) {
            sent << report.reason << report.comment;
            answer = done;
            return platform::delay(1h, [] {});
        };
        enter({.source = u"报价"_s, .outcome = Outcome::Translated, .answer = u"見積もり"_s});
        button(feedbackButton)->click();
        auto *reason = named<QComboBox>(u"翻译错误"_s);
        QVERIFY(reason);
        QCOMPARE(reason->count(), 6);
        reason->setCurrentIndex(reason->findText(u"语气不对"_s));
        QWidget *comment = named(u"补充说明（可选）"_s);
        const auto gap = [&] {
            return comment->window()->y() - button(feedbackButton)->mapToGlobal(QPoint()).y();
        };
        const int atFirst = gap();
        const int height = m_controller->panel()->height();
        Q_EMIT m_session->translatedTextAppended(u"\n\n\n\n\n"_s); // and its button moves down
        QTRY_VERIFY(m_controller->panel()->height() > height);
        QTRY_COMPARE(gap(), atFirst);
        QTest::keyClicks(comment, u"rude"_s);
        comment->setFocus();
        QVERIFY(QTest::qWaitForWindowActive(comment->window()));
        QTest::keyClick(comment->window()->windowHandle(), Qt::Key_Return, modifier);
        QCOMPARE(inserted, 0);
        QCOMPARE(sent, (QStringList{u"tone"_s, u"rude"_s}));
        QVERIFY(!button(u"提交"_s)->isEnabled());
        answer(taken);
        QVERIFY(named<QLabel>(line));
        button(taken ? u"完成"_s : u"取消"_s)->click();
        QVERIFY(!named<QLabel>(line));
        QCOMPARE(m_session->feedbackPhase(), FeedbackPhase::Idle);
    }

    void dictationTellsWhyItFails()
    {
        m_desktop->audioInput.setGrants(false);
        enter({.mode = PanelMode::Compose});
        button(microphoneButton)->click();
        QTRY_VERIFY(!m_session->voiceError().isEmpty());
        QVERIFY(named<QLabel>(m_session->voiceError()));
        QVERIFY(button(u"打开设置"_s));
        m_desktop->audioInput.setGrants(true);
        button(microphoneButton)->click();
        QTRY_VERIFY(m_session->isListening());
        QCOMPARE(button(microphoneButton)->toolTip(), u"停止语音输入"_s);
        // Listening, it stays although nothing has been typed.
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QVERIFY(m_controller->panel()->isVisible());
    }

    void aPreeditTranslatesNothing()
    {
        enter({.mode = PanelMode::Compose, .live = true});
        auto *editor = named<QPlainTextEdit>(u"原文"_s);
        int edits = 0;
        connect(m_session.get(), &TranslationViewModel::sourceTextChanged, this, [&] { ++edits; });
        QInputMethodEvent preedit(u"nihao"_s, {});
        QCoreApplication::sendEvent(editor, &preedit);
        QCOMPARE(edits, 0);
        // Nor does it give the background the editor's own line ends.
        m_session->prepareReply(u"hello\r\nyou"_s, Language::English);
        button(contextButton)->click();
        QCoreApplication::sendEvent(named(u"背景（可选，如对方的消息）"_s), &preedit);
        QCOMPARE(m_session->contextText(), u"hello\r\nyou"_s);
        QCoreApplication::sendEvent(editor, &preedit);
        edits = 0;
        QInputMethodEvent commit;
        commit.setCommitString(u"你好"_s);
        QCoreApplication::sendEvent(editor, &commit);
        QCOMPARE(m_session->sourceText(), u"你好"_s);
        QCOMPARE(edits, 1);
    }

    void strangeTextsAreShownWhole_data()
    {
        QTest::addColumn<QString>("strange");
        QTest::newRow("200,000 characters") << u"译文，"_s.repeated(66'667);
        QTest::newRow("50,000 lines") << u"译\n"_s.repeated(50'000);
        QTest::newRow("a word of 10,000 characters") << u"x"_s.repeated(10'000);
        QTest::newRow("nothing that has a width") << u"\u200b"_s.repeated(20'000);
        QTest::newRow("right to left") << u"مرحبا English بالعالم "_s.repeated(200);
        QTest::newRow("foreign line ends") << u"a\r\nb\rc\u2028d\u2029e\tf\u0000g"_s;
    }

    void strangeTextsAreShownWhole()
    {
        QFETCH(const QString, strange);
        m_session->historyLookup = [&](const QString &, Language) {
            return std::optional(strange);
        };
        m_session->setSource(u"x"_s, true, std::nullopt);
        show(PanelMode::Selection);
        QCOMPARE(text(u"译文"_s), strange);
        QWidget *view = named(u"译文"_s);
        int height = 0; // a long text is laid out in shares
        QTRY_COMPARE(std::exchange(height, view->height()), view->height());
        QTest::keyClick(view, Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(m_controller->panel()->grab().size().isValid());
        QVERIFY(m_controller->panel()->width() == 360);
    }

private:
    void enter(const Situation &situation)
    {
        m_settings->liveTranslate.set(situation.live);
        if (situation.takesFeedback)
            m_session->feedbackHandler = [](const FeedbackReport &,
                                            std::function<void(bool)> done) {
                return platform::delay(0ms, [done] { done(true); });
            };
        switch (situation.outcome) {
        case Outcome::Translated:
            m_server->enqueue(eventStream({situation.answer}));
            break;
        case Outcome::Failed:
            m_server->enqueue(localcloud::Answer::html(500));
            break;
        case Outcome::Waiting:
            m_server->enqueue(localcloud::Answer::silence());
            break;
        case Outcome::Nothing:
            break;
        }
        if (situation.mode == PanelMode::Selection) {
            m_session->setSource(situation.source, situation.hasInsertTarget, std::nullopt);
        } else {
            if (situation.mode == PanelMode::Reply)
                m_session->prepareReply(u"お見積もり"_s, Language::Japanese);
            else
                m_session->prepareManualInput(situation.hasInsertTarget, std::nullopt);
            m_session->editSource(situation.source);
            if (situation.outcome != Outcome::Nothing)
                m_session->translateNow();
        }
        show(situation.mode);
        if (situation.outcome == Outcome::Translated)
            QTRY_COMPARE(phase(), Phase::Kind::Done);
        if (situation.outcome == Outcome::Failed)
            QTRY_COMPARE(phase(), Phase::Kind::Error);
    }
};

QTEST_MAIN(TestPanelContent)
#include "tst_panel_content.moc"
