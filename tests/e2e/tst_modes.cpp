#include "road.h"

#include "support/browser.h"

#include "localcloud/cloud_service.h"
#include "localcloud/event_stream.h"
#include "localcloud/router.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <X11/keysym.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using namespace nivora::test;
using localcloud::eventStream;

namespace {

const QString chinese = u"请发一下报价"_s;
const QString japanese = u"見積もりを送ってください"_s;

localcloud::Answer answerWith(const QString &text)
{
    const QJsonObject choice{{u"message"_s, QJsonObject{{u"content"_s, text}}}};
    return localcloud::Answer::json(200, {{u"choices"_s, QJsonArray{choice}}});
}

} // namespace

// A walk through what the panel offers, by keys and as assistive tools see it.
class TestModes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aJapaneseResultIsReadAndChecked();
    void aVariantTakesThePlaceOfTheResult();
    void textIsComposed_data();
    void textIsComposed();
    void aReplyIsWrittenToAPage();
    void thePinnedPanelFollowsTheLanguageMenu();
    void feedbackReachesTheCloud();
};

void TestModes::aJapaneseResultIsReadAndChecked()
{
    Road road;
    QVERIFY2(road.begin({{u"readingStyle"_s, u"romaji"_s}, {u"showBackTranslation"_s, true}}),
             qUtf8Printable(road.problem()));
    road.server.enqueue(eventStream({u"見積もりを"_s, u"送ってください"_s}));
    road.server.enqueue(eventStream({u"请把"_s, u"报价发给我"_s}));
    QVERIFY2(road.open(Editor::Toolkit::Gtk, chinese), qUtf8Printable(road.problem()));

    road.pull(Trigger::DoubleShift);
    QVERIFY2(road.product->waitForTranslation(japanese, patience), qUtf8Printable(road.problem()));
    const auto reading = road.product->waitForControl(u"读音"_s, patience);
    QVERIFY2(reading, qUtf8Printable(road.problem()));
    QCOMPARE(reading->text(), u"mitsumori o okutte kudasai"_s);
    const auto check = road.product->waitForControl(u"回译"_s, patience);
    QVERIFY2(check && waitUntil([&] { return check->text() == u"请把报价发给我"_s; }, patience),
             qUtf8Printable(road.problem()));
    QVERIFY2(road.prompt(1).endsWith(u"\n\n"_s + japanese), qUtf8Printable(road.prompt(1)));
}

void TestModes::aVariantTakesThePlaceOfTheResult()
{
    Road road;
    QVERIFY2(road.begin(), qUtf8Printable(road.problem()));
    road.server.enqueue(eventStream({japanese}));
    road.server.enqueue(answerWith(u"1. お見積もりをお願いします\n2. 見積書をください"_s));
    QVERIFY2(road.open(Editor::Toolkit::Gtk, chinese), qUtf8Printable(road.problem()));
    road.pull(Trigger::DoubleShift);
    QVERIFY2(road.product->waitForTranslation(japanese, patience), qUtf8Printable(road.problem()));
    const auto reading = road.product->waitForControl(u"读音"_s, patience);
    QVERIFY2(reading, qUtf8Printable(road.problem()));

    QVERIFY2(road.press(u"更多译文"_s), qUtf8Printable(road.problem()));
    const auto variant = road.product->waitForControl(u"見積書をください"_s, patience);
    QVERIFY2(variant && road.product->control(u"お見積もりをお願いします"_s),
             qUtf8Printable(road.problem()));
    QVERIFY(variant->takeFocus());
    road.user->press({XK_Return});
    QVERIFY(road.product->waitForTranslation(u"見積書をください"_s, patience));
    QVERIFY(waitUntil([&] { return road.product->control(u"译文"_s)->isFocused(); }, patience));
    QVERIFY2(waitUntil([&] { return reading->text() == u"みつもり しょ を ください"_s; }, patience),
             qUtf8Printable(reading->text()));
    QVERIFY(!road.product->control(u"お見積もりをお願いします"_s));

    QVERIFY2(road.press(u"复制译文"_s), qUtf8Printable(road.problem()));
    QVERIFY(waitUntil([&] { return road.clipboard->text() == u"見積書をください"_s; }, patience));
    road.user->press({XK_Control_L, XK_Return});
    QVERIFY(road.product->waitForPanelGone(patience));
    QVERIFY2(road.editor->waitForText(u"見積書をください"_s, patience),
             qUtf8Printable(road.editor->text()));
}

void TestModes::textIsComposed_data()
{
    QTest::addColumn<bool>("live");
    QTest::addColumn<bool>("hasField");
    QTest::newRow("live, into a field") << true << true;
    QTest::newRow("by a key, onto the clipboard") << false << false;
}

void TestModes::textIsComposed()
{
    QFETCH(const bool, live);
    QFETCH(const bool, hasField);
    Road road;
    QVERIFY2(road.begin({{u"liveTranslate"_s, live}}), qUtf8Printable(road.problem()));
    // Without a field the user works in a page.
    Browser page({road.session, *road.user, *road.tree, *road.clipboard}, Browser::Kind::Firefox);
    if (hasField) {
        QVERIFY2(road.open(Editor::Toolkit::Gtk, {}, false), qUtf8Printable(road.problem()));
    } else {
        QVERIFY(page.open() && page.showHtml(u"<p>nothing to write into</p>"_s));
    }
    road.server.enqueue(eventStream({u"你好"_s}));
    road.pull(Trigger::DoubleShift);
    const auto source = road.product->waitForControl(u"原文"_s, patience);
    QVERIFY2(source && waitUntil([&] { return source->isFocused(); }, patience),
             qUtf8Printable(road.problem()));
    QCOMPARE(road.product->control(u"输入文字，自动翻译。"_s).has_value(), live);
    QCOMPARE(road.product->controlBeginning(u"翻译"_s).has_value(), !live);

    road.type("hello");
    if (!live) {
        QVERIFY(waitUntil([&] { return source->text() == u"hello"_s; }, patience));
        QVERIFY(road.server.requests().isEmpty());
        road.user->press({XK_Control_L, XK_Return});
    }
    QVERIFY2(road.product->waitForTranslation(u"你好"_s, patience), qUtf8Printable(road.problem()));
    QVERIFY2(road.prompt(0).endsWith(u"\n\nhello"_s), qUtf8Printable(road.prompt(0)));
    QVERIFY2(road.product->waitForControl(hasField ? u"Ctrl+↩ 插入到输入框"_s : u"Ctrl+↩ 复制"_s,
                                          patience),
             qUtf8Printable(road.problem()));
    road.user->press({XK_Control_L, XK_Return});
    if (hasField) {
        QVERIFY(road.product->waitForPanelGone(patience));
        QVERIFY(road.editor->waitForText(u"你好"_s, patience));
    } else {
        QVERIFY(road.product->waitForControl(u"已复制"_s, patience));
        QCOMPARE(road.clipboard->text(), u"你好"_s);
        QVERIFY(road.product->waitForControl(u"Ctrl+↩ 复制"_s, patience));
    }
}

void TestModes::aReplyIsWrittenToAPage()
{
    Road road;
    QVERIFY2(road.begin({{u"byoPromptTemplate"_s, u"语境：{{background}}。\n\n{{text}}"_s}}),
             qUtf8Printable(road.problem()));
    Browser page({road.session, *road.user, *road.tree, *road.clipboard}, Browser::Kind::Firefox);
    QVERIFY(page.open() && page.showHtml(u"<p id='a'>Please send the quotation.</p>"_s));
    QVERIFY(page.waitForAccessible(u"Please send the quotation."_s, patience));
    QVERIFY(page.drag(u"a"_s, u"a"_s, u"quotation."_s));
    road.server.enqueue(eventStream({u"请发送报价。"_s}));
    road.pull(Trigger::DoubleShift);
    QVERIFY2(road.product->waitForTranslation(u"请发送报价。"_s, patience),
             qUtf8Printable(road.problem()));
    // With its buttons the panel has its height, and a drag moves it for good.
    QVERIFY(road.product->waitForControl(u"复制译文"_s, patience));
    const auto opened = road.user->find(Product::panel());
    QVERIFY(opened);
    const QPoint corner = opened->geometry.topLeft();
    // Away from the selection, whose place the reply takes again.
    road.user->drag(corner + QPoint(200, 15), corner + QPoint(400, 215));
    QVERIFY(waitUntil(
        [&] { return road.user->find(Product::panel())->geometry.topLeft() != corner; }, patience));

    QVERIFY2(road.press(u"以对方原文为背景，撰写并翻译你的回复"_s), qUtf8Printable(road.problem()));
    const auto source = road.product->waitForControl(u"原文"_s, patience);
    QVERIFY2(source && waitUntil([&] { return source->isFocused(); }, patience),
             qUtf8Printable(road.problem()));
    QCOMPARE(road.user->find(Product::panel())->geometry.topLeft(), corner);

    QVERIFY2(road.press(u"背景"_s), qUtf8Printable(road.problem()));
    const auto background = road.product->waitForControl(u"背景（可选，如对方的消息）"_s, patience);
    QVERIFY2(background && background->text() == u"Please send the quotation."_s,
             qUtf8Printable(road.problem()));
    QVERIFY(waitUntil([&] { return background->isFocused(); }, patience));
    road.user->press({XK_Escape}); // the popover alone
    QVERIFY(waitUntil([&] { return source->isFocused(); }, patience));

    road.server.enqueue(eventStream({u"It is on its way."_s}));
    QVERIFY(source->setText(u"已经寄出"_s));
    road.user->press({XK_Control_L, XK_Return});
    QVERIFY2(road.product->waitForTranslation(u"It is on its way."_s, patience),
             qUtf8Printable(road.problem()));
    QCOMPARE(road.prompt(1), u"语境：Please send the quotation.。\n\n已经寄出"_s);
    QVERIFY(road.product->waitForControl(u"Ctrl+↩ 复制，粘到回复框"_s, patience));
    road.user->press({XK_Control_L, XK_Return});
    QVERIFY(road.product->waitForControl(u"已复制，粘到回复框"_s, patience));
    QCOMPARE(road.clipboard->text(), u"It is on its way."_s);
}

void TestModes::thePinnedPanelFollowsTheLanguageMenu()
{
    Road road;
    QVERIFY2(road.begin(), qUtf8Printable(road.problem()));
    road.server.enqueue(eventStream({japanese}));
    road.server.enqueue(eventStream({u"Please send the quotation."_s}));
    QVERIFY2(road.open(Editor::Toolkit::Gtk, chinese), qUtf8Printable(road.problem()));
    road.pull(Trigger::DoubleShift);
    QVERIFY2(road.product->waitForTranslation(japanese, patience), qUtf8Printable(road.problem()));

    QVERIFY2(road.press(u"中文 → 日本語"_s), qUtf8Printable(road.problem()));
    const auto current = road.product->waitForControl(u"日本語"_s, patience);
    QVERIFY2(current && current->isFocused(), qUtf8Printable(road.problem()));
    QVERIFY(road.press(u"English"_s));
    QVERIFY2(road.product->waitForTranslation(u"Please send the quotation."_s, patience),
             qUtf8Printable(road.problem()));
    QVERIFY2(road.product->control(u"中文 → English"_s), qUtf8Printable(road.problem()));
    QVERIFY(!road.product->control(u"日本語"_s)); // the menu has closed

    QVERIFY2(road.press(u"钉住"_s), qUtf8Printable(road.problem()));
    const auto pin = road.product->waitForControl(u"已钉住（失焦不关闭）"_s, patience);
    QVERIFY2(pin && pin->isChecked(), qUtf8Printable(road.problem()));
    road.user->movePointer(road.editor->textArea().bottomRight() - QPoint(20, 20));
    road.user->click();
    QVERIFY(road.user->waitForActive(road.editor->window(), patience));
    QVERIFY(!road.product->waitForPanelGone(500ms));
    QCOMPARE(road.product->translation(), u"Please send the quotation."_s);
    QVERIFY(road.press(u"关闭面板"_s));
    QVERIFY(road.product->waitForPanelGone(patience));
}

void TestModes::feedbackReachesTheCloud()
{
    const QUrl endpoint(QStringLiteral(NIVORA_CLOUD_ENDPOINT));
    if (endpoint.host() != "localhost"_L1)
        QSKIP("The product is built for a cloud that is not on this machine.");
    localcloud::Server cloud;
    QVERIFY2(waitUntil([&] { return cloud.listen(quint16(endpoint.port())); }, patience),
             qUtf8Printable(cloud.errorString()));
    localcloud::CloudService service({});
    localcloud::Router router;
    service.addRoutes(router);
    cloud.setHandler([&](const localcloud::Request &request) { return router.handle(request); });

    Road road({.keyring = true});
    QVERIFY2(road.begin({{u"useCustomBackend"_s, false}}), qUtf8Printable(road.problem()));
    QProcess *keyring =
        road.session.launch(u"secret-tool"_s, {u"store"_s, u"--label=token"_s, u"service"_s,
                                               u"app.nivora"_s, u"account"_s, u"session-token"_s});
    QVERIFY(keyring);
    keyring->write("a token");
    keyring->closeWriteChannel();
    QVERIFY(waitUntil([&] { return keyring->state() == QProcess::NotRunning; }, patience));
    QVERIFY2(road.open(Editor::Toolkit::Gtk, chinese), qUtf8Printable(road.problem()));

    road.pull(Trigger::DoubleShift);
    QVERIFY2(road.press(u"反馈译文问题"_s), qUtf8Printable(road.problem()));
    const auto comment = road.product->waitForControl(u"补充说明（可选）"_s, patience);
    QVERIFY2(comment, qUtf8Printable(road.problem()));
    QVERIFY(waitUntil([&] { return road.product->control(u"翻译错误"_s)->isFocused(); }, patience));
    road.user->press({XK_Down});
    road.user->press({XK_Tab});
    road.type("half");
    QVERIFY(waitUntil([&] { return comment->text() == u"half"_s; }, patience));
    road.user->press({XK_Return});
    QVERIFY2(road.product->waitForControl(u"已提交，感谢反馈"_s, patience),
             qUtf8Printable(road.problem()));
    const auto &request = cloud.requests().back();
    QCOMPARE(request.path, "/v1/feedback"_ba);
    QCOMPARE(request.header("Authorization"), "Bearer a token"_ba);
    const auto report = QJsonDocument::fromJson(request.body).object();
    QCOMPARE(report[u"sourceText"_s], chinese);
    QCOMPARE(report[u"translation"_s], road.product->translation());
    QCOMPARE(report[u"reason"_s], u"omission"_s);
    QCOMPARE(report[u"comment"_s], u"half"_s);
    QVERIFY(!report[u"tid"_s].toString().isEmpty() && !report[u"context"_s].toString().isEmpty());
    road.user->press({XK_Return}); // done
    QVERIFY(waitUntil([&] { return !road.product->control(u"已提交，感谢反馈"_s); }, patience));
    QVERIFY(road.user->find(Product::panel()));
}

QTEST_GUILESS_MAIN(TestModes)
#include "tst_modes.moc"
