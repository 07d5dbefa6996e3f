#include "road.h"
#include "scripted_program.h"

#include "localcloud/event_stream.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QTest>

#include <X11/keysym.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using namespace nivora::test;

namespace {

const QByteArray hint("x-kde-passwordManagerHint");

// More than one message of the X server holds.
QByteArray noise()
{
    QList<quint32> numbers(6 * 1024 * 1024 / 4);
    QRandomGenerator(1).fillRange(numbers.data(), numbers.size());
    return {reinterpret_cast<const char *>(numbers.constData()), numbers.size() * 4};
}

QByteArray picture()
{
    QImage image(64, 48, QImage::Format_ARGB32);
    image.fill(qRgba(10, 120, 200, 128));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

// What people have on the clipboard, all at once.
std::vector<ClipboardPeer::Offer> everything()
{
    return {{"UTF8_STRING", u"譯文 👋\r\n"_s.toUtf8()},
            {"text/html", "<b>bold</b>"},
            {"text/rtf", "{\\rtf1\\ansi {\\b bold}}"},
            {"text/uri-list", "file:///tmp/a%20b\r\nfile:///tmp/c\r\n"},
            {"x-special/gnome-copied-files", "cut\nfile:///tmp/a%20b\nfile:///tmp/c"},
            {"application/x-kde-cutselection", "1"},
            {"image/png", picture()},
            {hint, "secret"}, // of a password manager
            {"application/x-unknown", noise()}};
}

} // namespace

// The user's clipboard while the product borrows it.
class TestClipboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFormatComesBack_data()
    {
        QTest::addColumn<bool>("inserted");
        QTest::newRow("after a simulated copy") << false;
        QTest::newRow("after an insertion") << true;
    }

    void everyFormatComesBack()
    {
        QFETCH(const bool, inserted);
        Road road;
        QVERIFY(road.begin());
        const auto offers = everything();
        QVERIFY(road.clipboard->offer(offers));
        ScriptedProgram program(road.session);
        if (inserted) {
            program.onPaste = [&program] { program.paste(); };
            QVERIFY(insertInto(road, program, u"譯"_s));
            QTRY_COMPARE(program.pasted, u"譯"_s.toUtf8());
        } else {
            program.onCopy = [&program] { program.copy("source"); };
            QVERIFY(program.open(*road.user, patience));
            road.pull(Trigger::DoubleShift);
            QVERIFY(road.waitForRequests(1));
            QVERIFY(road.prompt(0).endsWith(u"\n\nsource"_s));
        }
        QVERIFY(
            waitUntil([&] { return road.clipboard->formats().contains("image/png"); }, patience));
        QVERIFY(!road.clipboard->owns());
        QCOMPARE(road.clipboard->formats().size(),
                 qsizetype(offers.size()) + 3); // and the protocol's
        for (const auto &[format, data] : offers)
            QVERIFY2(road.clipboard->read(format) == data, format.constData());
    }

    void lentTextIsMarkedAndWaitsForASlowProgram()
    {
        Road road;
        QVERIFY(road.begin());
        QVERIFY(road.clipboard->offerText(u"from before"_s));
        ScriptedProgram program(road.session);
        QVERIFY(insertInto(road, program, u"譯"_s));
        const auto pressed = Clock::now();
        QCOMPARE(road.clipboard->read(hint), QByteArray("secret"));
        // A trigger that comes meanwhile neither takes the lent text for a selection
        // nor the clipboard from the program.
        const int copies = program.copies;
        program.onCopy = [&program] { program.copy("another source"); };
        road.pull(Trigger::DoubleShift);
        QVERIFY(waitUntil([&] { return Clock::now() - pressed > 900ms; }, patience));
        program.paste();
        QTRY_COMPARE(program.pasted, u"譯"_s.toUtf8());

        QVERIFY(waitUntil([&] { return road.clipboard->text() == u"from before"_s; }, patience));
        QVERIFY(road.product->waitForPanel(patience));
        QCOMPARE(program.copies, copies + 1);
        QVERIFY(road.waitForRequests(2));
        QVERIFY(road.prompt(1).endsWith(u"\n\nanother source"_s));
        QVERIFY(waitUntil([&] { return road.clipboard->text() == u"from before"_s; }, patience));
        QVERIFY(!road.clipboard->formats().contains(hint));
    }

    void quittingGivesTheClipboardBack()
    {
        Road road;
        QVERIFY(road.begin());
        // It asks for all that a program that ends has on the clipboard.
        X11Peer manager(road.session.displayName());
        const auto window = manager.createWindow(0);
        QByteArray kept;
        xcb_selection_request_event_t request{};
        manager.onEvent = [&](const xcb_generic_event_t &event) {
            const int type = event.response_type & 0x7f;
            if (type == XCB_SELECTION_REQUEST) {
                request = reinterpret_cast<const xcb_selection_request_event_t &>(event);
                xcb_convert_selection(manager.xcb(), window, manager.atom("CLIPBOARD"),
                                      manager.atom("UTF8_STRING"), manager.atom("KEPT"),
                                      XCB_CURRENT_TIME);
            } else if (type == XCB_SELECTION_NOTIFY) {
                kept = manager.property(window, manager.atom("KEPT"));
                manager.notify(request, request.property);
            }
        };
        manager.own(manager.atom("CLIPBOARD_MANAGER"), window);
        QVERIFY(road.clipboard->offerText(u"from before"_s));
        ScriptedProgram program(road.session);
        QVERIFY(insertInto(road, program, u"譯"_s));

        // In the middle of an insertion, with a text lent that is nobody's to keep.
        road.ask(u"quit"_s);
        QVERIFY(waitUntil([&] { return !road.product->isRunning(); }, patience));
        QCOMPARE(kept, "from before"_qba);
    }

private:
    // Translates what the program copies and asks for it to be put in its place.
    static bool insertInto(Road &road, ScriptedProgram &program, const QString &translation)
    {
        road.server.enqueue(localcloud::eventStream({translation}));
        program.onCopy = [&program] { program.copy("source"); };
        if (!program.open(*road.user, patience))
            return false;
        road.pull(Trigger::DoubleShift);
        if (!road.product->waitForPanel(patience) ||
            !road.product->waitForTranslation(translation, patience))
            return false;
        road.user->press({XK_Control_L, XK_Return});
        return waitUntil([&] { return program.pastes > 0; }, patience, 200us);
    }
};

QTEST_GUILESS_MAIN(TestClipboard)
#include "tst_clipboard.moc"
