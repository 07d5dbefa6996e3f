#include "road.h"

#include "support/browser.h"

#include "localcloud/cloud_service.h"
#include "localcloud/event_stream.h"
#include "localcloud/router.h"

#include <QDir>
#include <QFile>
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
    void aJapaneseResultIsReadAndChecked()
    {
        Road road;
        QVERIFY(road.begin({{u"readingStyle"_s, u"romaji"_s}, {u"showBackTranslation"_s, true}}));
        road.server.enqueue(eventStream({u"見積もりを"_s, u"送ってください"_s}));
        road.server.enqueue(eventStream({u"请把"_s, u"报价发给我"_s}));
        QVERIFY(road.open(Editor::Toolkit::Gtk, chinese));

        road.pull(Trigger::DoubleShift);
        QVERIFY(road.product->waitForTranslation(japanese, patience));
        const auto reading = road.product->waitForControl(u"读音"_s, patience);
        QVERIFY(reading);
        QCOMPARE(reading->text(), u"mitsumori o okutte kudasai"_s);
        const auto check = road.product->waitForControl(u"回译"_s, patience);
        QVERIFY(check && waitUntil([&] { return check->text() == u"请把报价发给我"_s; }, patience));
        QVERIFY2(road.prompt(1).endsWith(u"\n\n"_s + japanese), qUtf8Printable(road.prompt(1)));
    }

    void aVariantTakesThePlaceOfTheResult()
    {
        Road road;
        QVERIFY(road.begin());
        QVERIFY(road.translate(chinese, japanese));
        road.server.enqueue(answerWith(u"1. お見積もりをお願いします\n2. 見積書をください"_s));
        const auto reading = road.product->waitForControl(u"读音"_s, patience);
        QVERIFY(reading);

        QVERIFY(road.press(u"更多译文"_s));
        const auto variant = road.product->waitForControl(u"見積書をください"_s, patience);
        QVERIFY(variant && road.product->control(u"お見積もりをお願いします"_s));
        QVERIFY(variant->takeFocus());
        road.user->press({XK_Return});
        QVERIFY(road.product->waitForTranslation(u"見積書をください"_s, patience));
        QVERIFY(waitUntil([&] { return road.product->control(u"译文"_s)->isFocused(); }, patience));
        QVERIFY2(
            waitUntil([&] { return reading->text() == u"みつもり しょ を ください"_s; }, patience),
            qUtf8Printable(reading->text()));
        QVERIFY(!road.product->control(u"お見積もりをお願いします"_s));

        QVERIFY(road.press(u"复制译文"_s));
        QVERIFY(
            waitUntil([&] { return road.clipboard->text() == u"見積書をください"_s; }, patience));
        road.user->press({XK_Control_L, XK_Return});
        QVERIFY(road.product->waitForPanelGone(patience));
        QVERIFY2(road.editor->waitForText(u"見積書をください"_s, patience),
                 qUtf8Printable(road.editor->text()));
    }

    void textIsComposed_data()
    {
        QTest::addColumn<bool>("live");
        QTest::addColumn<bool>("hasField");
        QTest::newRow("live, into a field") << true << true;
        QTest::newRow("by a key, onto the clipboard") << false << false;
    }

    void textIsComposed()
    {
        QFETCH(const bool, live);
        QFETCH(const bool, hasField);
        Road road;
        QVERIFY(road.begin({{u"liveTranslate"_s, live}}));
        // Without a field the user works in a page.
        Browser page({road.session, *road.user, *road.tree, *road.clipboard},
                     Browser::Kind::Firefox);
        if (hasField) {
            QVERIFY(road.open(Editor::Toolkit::Gtk, {}, false));
        } else {
            QVERIFY(page.open() && page.showHtml(u"<p>nothing to write into</p>"_s));
        }
        road.server.enqueue(eventStream({u"你好"_s}));
        road.pull(Trigger::DoubleShift);
        const auto source = road.product->waitForControl(u"原文"_s, patience);
        QVERIFY(source && waitUntil([&] { return source->isFocused(); }, patience));
        QCOMPARE(road.product->control(u"输入文字，自动翻译。"_s).has_value(), live);
        QCOMPARE(road.product->controlBeginning(u"翻译"_s).has_value(), !live);

        road.type("hello");
        if (!live) {
            QVERIFY(waitUntil([&] { return source->text() == u"hello"_s; }, patience));
            QVERIFY(road.server.requests().isEmpty());
            road.user->press({XK_Control_L, XK_Return});
        }
        QVERIFY(road.product->waitForTranslation(u"你好"_s, patience));
        QVERIFY2(road.prompt(0).endsWith(u"\n\nhello"_s), qUtf8Printable(road.prompt(0)));
        QVERIFY(road.product->waitForControl(hasField ? u"Ctrl+↩ 插入到输入框"_s : u"Ctrl+↩ 复制"_s,
                                             patience));
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

    void aReplyIsWrittenToAPage()
    {
        Road road;
        QVERIFY(road.begin({{u"byoPromptTemplate"_s, u"语境：{{background}}。\n\n{{text}}"_s}}));
        Browser page({road.session, *road.user, *road.tree, *road.clipboard},
                     Browser::Kind::Firefox);
        QVERIFY(page.open() && page.showHtml(u"<p id='a'>Please send the quotation.</p>"_s));
        QVERIFY(page.waitForAccessible(u"Please send the quotation."_s, patience));
        QVERIFY(page.drag(u"a"_s, u"a"_s, u"quotation."_s));
        road.server.enqueue(eventStream({u"请发送报价。"_s}));
        const auto reply = u"以对方原文为背景，撰写并翻译你的回复"_s;
        const auto isOffered = [&] { // once the browser tells that nothing can be replaced
            road.pull(Trigger::DoubleShift);
            if (road.product->waitForTranslation(u"请发送报价。"_s, patience) &&
                road.product->waitForControl(reply, 2s))
                return true;
            road.user->press({XK_Escape});
            road.product->waitForPanelGone(patience);
            return false;
        };
        QVERIFY(waitUntil(isOffered, patience));
        // With its buttons the panel has its height, and a drag moves it for good.
        QVERIFY(road.product->waitForControl(u"复制译文"_s, patience));
        const auto opened = road.user->find(Product::panel());
        QVERIFY(opened);
        const QPoint corner = opened->geometry.topLeft();
        // Away from the selection, whose place the reply takes again.
        road.user->drag(corner + QPoint(200, 15), corner + QPoint(400, 215));
        QVERIFY(waitUntil(
            [&] { return road.user->find(Product::panel())->geometry.topLeft() != corner; },
            patience));

        QVERIFY(road.press(reply));
        const auto source = road.product->waitForControl(u"原文"_s, patience);
        QVERIFY(source && waitUntil([&] { return source->isFocused(); }, patience));
        QCOMPARE(road.user->find(Product::panel())->geometry.topLeft(), corner);

        QVERIFY(road.press(u"背景"_s));
        const auto background =
            road.product->waitForControl(u"背景（可选，如对方的消息）"_s, patience);
        QVERIFY(background && background->text() == u"Please send the quotation."_s);
        QVERIFY(waitUntil([&] { return background->isFocused(); }, patience));
        road.user->press({XK_Escape}); // the popover alone
        QVERIFY(waitUntil([&] { return source->isFocused(); }, patience));

        road.server.enqueue(eventStream({u"It is on its way."_s}));
        QVERIFY(source->setText(u"已经寄出"_s));
        road.user->press({XK_Control_L, XK_Return});
        QVERIFY(road.product->waitForTranslation(u"It is on its way."_s, patience));
        QCOMPARE(road.prompt(1), u"语境：Please send the quotation.。\n\n已经寄出"_s);
        QVERIFY(road.product->waitForControl(u"Ctrl+↩ 复制，粘到回复框"_s, patience));
        road.user->press({XK_Control_L, XK_Return});
        QVERIFY(road.product->waitForControl(u"已复制，粘到回复框"_s, patience));
        QCOMPARE(road.clipboard->text(), u"It is on its way."_s);
    }

    void theUsersTermsReachTheService()
    {
        Road road;
        const QDir data(road.session.folder() + u"/data"_s);
        QVERIFY(data.mkpath(u"app.nivora"_s));
        QFile glossary(data.filePath(u"app.nivora/glossary.json"_s));
        QVERIFY(glossary.open(QIODevice::WriteOnly));
        glossary.write(
            R"([{"id":"6F9619FF-8B86-D011-B42D-00C04FC964FF","zh":"报价","ja":"御見積書"}])");
        glossary.close();
        QVERIFY(road.begin({{u"byoPromptTemplate"_s, u"术语：{{glossary}}。\n\n{{text}}"_s}}));
        QVERIFY(road.open(Editor::Toolkit::Gtk, chinese));
        road.pull(Trigger::DoubleShift);
        QVERIFY(road.waitForRequests(1));
        QCOMPARE(road.prompt(0), u"术语：报价→御見積書。\n\n请发一下报价"_s);
    }

    void thePinnedPanelFollowsTheLanguageMenu()
    {
        Road road;
        QVERIFY(road.begin());
        QVERIFY(road.translate(chinese, japanese));
        road.server.enqueue(eventStream({u"Please send the quotation."_s}));

        QVERIFY(road.press(u"中文 → 日本語"_s));
        const auto current = road.product->waitForControl(u"日本語"_s, patience);
        QVERIFY(current && current->isFocused());
        QVERIFY(road.press(u"English"_s));
        QVERIFY(road.product->waitForTranslation(u"Please send the quotation."_s, patience));
        QVERIFY(road.product->control(u"中文 → English"_s));
        QVERIFY(!road.product->control(u"日本語"_s)); // the menu has closed

        QVERIFY(road.press(u"钉住"_s));
        const auto pin = road.product->waitForControl(u"已钉住（失焦不关闭）"_s, patience);
        QVERIFY(pin && pin->isChecked());
        road.user->movePointer(road.editor->textArea().bottomRight() - QPoint(20, 20));
        road.user->click();
        QVERIFY(road.user->waitForActive(road.editor->window(), patience));
        QVERIFY(!road.product->waitForPanelGone(500ms));
        QCOMPARE(road.product->translation(), u"Please send the quotation."_s);
        QVERIFY(road.press(u"关闭面板"_s));
        QVERIFY(road.product->waitForPanelGone(patience));
    }

    void feedbackReachesTheCloud()
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
        cloud.setHandler(
            [&](const localcloud::Request &request) { return router.handle(request); });

        Road road({.keyring = true});
        QVERIFY(road.begin({{u"useCustomBackend"_s, false}}));
        road.secretTool(u"store"_s, u"session-token"_s, "a token");
        QVERIFY(road.open(Editor::Toolkit::Gtk, chinese));

        road.pull(Trigger::DoubleShift);
        QVERIFY(road.press(u"反馈译文问题"_s));
        const auto comment = road.product->waitForControl(u"补充说明（可选）"_s, patience);
        QVERIFY(comment);
        QVERIFY(
            waitUntil([&] { return road.product->control(u"翻译错误"_s)->isFocused(); }, patience));
        road.user->press({XK_Down});
        road.user->press({XK_Tab});
        road.type("half");
        QVERIFY(waitUntil([&] { return comment->text() == u"half"_s; }, patience));
        road.user->press({XK_Return});
        QVERIFY(road.product->waitForControl(u"已提交，感谢反馈"_s, patience));
        const auto &request = cloud.requests().back();
        QCOMPARE(request.path, "/v1/feedback"_ba);
        QCOMPARE(request.header("Authorization"), "Bearer a token"_ba);
        const auto report = QJsonDocument::fromJson(request.body).object();
        QCOMPARE(report[u"sourceText"_s], chinese);
        QCOMPARE(report[u"translation"_s], road.product->translation());
        QCOMPARE(report[u"reason"_s], u"omission"_s);
        QCOMPARE(report[u"comment"_s], u"half"_s);
        QVERIFY(!report[u"tid"_s].toString().isEmpty() &&
                !report[u"context"_s].toString().isEmpty());
        road.user->press({XK_Return}); // done
        QVERIFY(waitUntil([&] { return !road.product->control(u"已提交，感谢反馈"_s); }, patience));
        QVERIFY(road.user->find(Product::panel()));
    }
};

QTEST_GUILESS_MAIN(TestModes)
#include "tst_modes.moc"
