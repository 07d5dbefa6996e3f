#include "platform/clipboard.h"
#include "platform_linux/x11_desktop.h"
#include "support/clipboard_peer.h"
#include "support/desktop_session.h"
#include "support/wait.h"
#include "support/x11_peer.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>

using namespace nivora;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using linuxdesktop::X11Desktop;
using platform::Clipboard;
using platform::ClipboardContents;
using test::X11Peer;

namespace {

constexpr int sixMegabytes = 6 * 1024 * 1024;

QByteArray noise(int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 0x2545f491;
    for (char &byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = char(state >> 24);
    }
    return bytes;
}

// Waits for the answer to a reading of either kind.
template<typename Result, typename Read>
std::optional<Result> await(Read &&read)
{
    std::optional<Result> result;
    bool answered = false;
    const platform::Task task = read([&](std::optional<Result> value) {
        result = std::move(value);
        answered = true;
    });
    if (!test::waitUntil([&] { return answered; }, 10s, 200us))
        qWarning("a reading was not answered at all");
    return result;
}

std::optional<QString> readText(Clipboard &clipboard, std::chrono::milliseconds deadline = 5s)
{
    return await<QString>([&](auto done) { return clipboard.readText(deadline, std::move(done)); });
}

std::optional<ClipboardContents> readAll(Clipboard &clipboard,
                                         std::chrono::milliseconds deadline = 5s)
{
    return await<ClipboardContents>(
        [&](auto done) { return clipboard.read(deadline, std::move(done)); });
}

// A program that owns the clipboard and answers as the test says.
class Owner
{
public:
    using Answer = std::function<void(const xcb_selection_request_event_t &)>;

    Owner(const QByteArray &displayName, Answer answer)
        : peer(displayName)
    {
        peer.onEvent = [this, answer = std::move(answer)](const xcb_generic_event_t &event) {
            if (event.response_type == 0)
                ++errors;
            if ((event.response_type & 0x7f) != XCB_SELECTION_REQUEST)
                return;
            ++requests;
            answer(reinterpret_cast<const xcb_selection_request_event_t &>(event));
        };
        peer.own(peer.atom("CLIPBOARD"), peer.createWindow(0));
    }

    X11Peer peer;
    int requests = 0;
    int errors = 0; // by which many programs would end
};

} // namespace

class TestX11Clipboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup() { m_desktop.reset(); }

    void everyFormatSurvivesTheRoundTrip();
    void sixMegabytesComeFromAndGoToOtherPrograms();
    void textIsOfferedInTheFormsThatFitIt_data();
    void textIsOfferedInTheFormsThatFitIt();
    void concealedTextAsksManagersToLookAway();
    void fetchesOfDataByOthersAreCounted();
    void severalTargetsAreConvertedAtOnce();
    void emptyContentsEmptyTheClipboard();
    void changesAreCounted();
    void textIsReadFromWhatTheOwnerHas_data();
    void textIsReadFromWhatTheOwnerHas();
    void targetsThatAreRefusedAreLeftOut();
    void silentOwnerCostsItsDeadlineAndNothingElse();
    void lateAnswerIsNotTakenForAnothers();
    void ownerThatDiesInTheMiddleGivesNothing();
    void cancelledReadingDeliversNothing();

private:
    Clipboard &clipboard() { return m_desktop->clipboard(); }

    test::DesktopSession m_session;
    std::unique_ptr<X11Desktop> m_desktop;
};

void TestX11Clipboard::initTestCase()
{
    QVERIFY2(m_session.start({.windowManager = false, .accessibility = false}),
             qPrintable(m_session.error()));
}

void TestX11Clipboard::init()
{
    m_desktop = std::make_unique<X11Desktop>(m_session.displayName());
    QVERIFY(m_desktop->isValid());
}

void TestX11Clipboard::everyFormatSurvivesTheRoundTrip()
{
    ClipboardContents contents;
    contents.items = {
        {"UTF8_STRING", "UTF8_STRING", 8, u"译文 👋\r\n"_s.toUtf8()},
        {"text/html", "text/html", 8, "<b>bold</b>"},
        {"text/uri-list", "text/uri-list", 8, "file:///tmp/a%20b\r\n"},
        {"x-special/gnome-copied-files", "x-special/gnome-copied-files", 8, "copy\nfile:///tmp"},
        {"application/x-empty", "application/x-empty", 8, ""},
        {"application/x-numbers", "INTEGER", 32, noise(4000)},
        {"application/x-shorts", "INTEGER", 16, noise(600000)},
        {"application/x-unknown", "application/x-unknown", 8, noise(sixMegabytes)},
    };
    X11Desktop other(m_session.displayName());
    other.clipboard().setContents(contents);
    QTRY_COMPARE(clipboard().changeCount(), 1u);
    const auto read = readAll(clipboard());
    QVERIFY(read);
    QVERIFY(*read == contents);
    // Held by this program itself now, it reads the same.
    clipboard().setContents(*read);
    QVERIFY(readAll(clipboard()) == contents);
    QVERIFY(readAll(other.clipboard()) == contents);
}

void TestX11Clipboard::sixMegabytesComeFromAndGoToOtherPrograms()
{
    const QByteArray bytes = noise(sixMegabytes);
    QFile file(m_session.folder() + u"/bytes"_s);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    QProcess *owner =
        m_session.launch(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"clipboard"_s, u"-target"_s,
                                      u"application/x-unknown"_s, u"-in"_s, file.fileName()});
    QVERIFY(owner);
    QTRY_VERIFY(clipboard().changeCount() > 0);
    const auto read = readAll(clipboard());
    QVERIFY(read);
    QCOMPARE(read->items.size(), 1u);
    QVERIFY(read->items[0].data == bytes);
    m_session.end(owner);

    clipboard().setContents(*read);
    const test::ClipboardPeer reader(m_session);
    QVERIFY(reader.read("application/x-unknown") == bytes);
    QTRY_COMPARE(clipboard().fetchCount(), 1);
}

void TestX11Clipboard::textIsOfferedInTheFormsThatFitIt_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("latin1");
    QTest::newRow("Latin-1") << u"Grüße\n"_s << true;
    QTest::newRow("Chinese and an emoji") << u"你好 👋"_s << false;
}

void TestX11Clipboard::textIsOfferedInTheFormsThatFitIt()
{
    QFETCH(const QString, text);
    QFETCH(const bool, latin1);
    clipboard().setText(text);
    const test::ClipboardPeer reader(m_session);
    QTRY_VERIFY(reader.formats().contains("UTF8_STRING"));
    for (const char *format : {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "TEXT"})
        QCOMPARE(reader.read(format), text.toUtf8());
    QCOMPARE(reader.formats().contains("STRING"), latin1);
    QCOMPARE(reader.read("STRING"), latin1 ? std::optional(text.toLatin1()) : std::nullopt);
    QVERIFY(!reader.formats().contains("x-kde-passwordManagerHint"));
    QCOMPARE(readText(clipboard()), text);
}

void TestX11Clipboard::concealedTextAsksManagersToLookAway()
{
    clipboard().setText(u"lent"_s, Clipboard::Privacy::Concealed);
    const test::ClipboardPeer reader(m_session);
    QTRY_COMPARE(reader.read("x-kde-passwordManagerHint"), QByteArray("secret"));
    QCOMPARE(clipboard().fetchCount(), 0); // a manager that looks has not used the text
    QCOMPARE(reader.text(), u"lent"_s);
}

void TestX11Clipboard::fetchesOfDataByOthersAreCounted()
{
    const test::ClipboardPeer reader(m_session);
    clipboard().setText(u"text"_s);
    QTRY_VERIFY(reader.formats().contains("UTF8_STRING"));
    QCOMPARE(readText(clipboard()), u"text"_s);
    QCOMPARE(clipboard().fetchCount(), 0);
    QVERIFY(reader.text());
    QTRY_COMPARE(clipboard().fetchCount(), 1);
    QVERIFY(reader.read("STRING"));
    QTRY_COMPARE(clipboard().fetchCount(), 2);
    clipboard().setText(u"another"_s);
    QCOMPARE(clipboard().fetchCount(), 0);
}

void TestX11Clipboard::severalTargetsAreConvertedAtOnce()
{
    clipboard().setText(u"text"_s);
    QCOMPARE(readText(clipboard()), u"text"_s); // it is there

    X11Peer peer(m_session.displayName());
    const auto window = peer.createWindow(0);
    const auto list = peer.atom("LIST");
    const auto first = peer.atom("FIRST");
    const xcb_atom_t pairs[] = {peer.atom("UTF8_STRING"), first, peer.atom("image/png"),
                                peer.atom("SECOND")};
    xcb_change_property(peer.xcb(), XCB_PROP_MODE_REPLACE, window, list, peer.atom("ATOM_PAIR"), 32,
                        4, pairs);
    xcb_atom_t answered = XCB_NONE;
    peer.onEvent = [&](const xcb_generic_event_t &event) {
        if ((event.response_type & 0x7f) == XCB_SELECTION_NOTIFY)
            answered = reinterpret_cast<const xcb_selection_notify_event_t &>(event).property;
    };
    xcb_convert_selection(peer.xcb(), window, peer.atom("CLIPBOARD"), peer.atom("MULTIPLE"), list,
                          XCB_CURRENT_TIME);
    peer.synchronise();
    QTRY_COMPARE(answered, list);
    QCOMPARE(peer.property(window, first), "text"_qba);
    // The one that could not be converted is struck out.
    const xcb_atom_t struck[] = {pairs[0], pairs[1], pairs[2], XCB_NONE};
    QCOMPARE(peer.property(window, list),
             QByteArray(reinterpret_cast<const char *>(struck), sizeof struck));
}

void TestX11Clipboard::emptyContentsEmptyTheClipboard()
{
    const test::ClipboardPeer reader(m_session);
    test::ClipboardPeer owner(m_session);
    QVERIFY(owner.offerText(u"another's"_s));
    clipboard().setContents({});
    QCOMPARE(readAll(clipboard()), ClipboardContents{});
    QVERIFY(!owner.owns());

    clipboard().setText(u"ours"_s);
    QCOMPARE(readText(clipboard()), u"ours"_s);
    clipboard().setContents({});
    QCOMPARE(readAll(clipboard()), ClipboardContents{});
    QCOMPARE(readText(clipboard()), std::nullopt);
    QVERIFY(reader.formats().isEmpty());
}

void TestX11Clipboard::changesAreCounted()
{
    test::ClipboardPeer other(m_session);
    QCOMPARE(clipboard().changeCount(), 0u);
    clipboard().setText(u"ours"_s);
    QCOMPARE(clipboard().changeCount(), 1u);
    QVERIFY(other.offerText(u"another's"_s));
    QTRY_COMPARE(clipboard().changeCount(), 2u);
    QVERIFY(other.offerText(u"another's again"_s));
    QTRY_COMPARE(clipboard().changeCount(), 3u);
    clipboard().setContents({});
    QCOMPARE(clipboard().changeCount(), 4u);
    clipboard().setText(u"ours"_s);
    // By the time that this is answered all of the above has been seen.
    QCOMPARE(readText(clipboard()), u"ours"_s);
    QVERIFY(other.offerText(u"another's"_s));
    QTRY_COMPARE(clipboard().changeCount(), 6u);
}

void TestX11Clipboard::textIsReadFromWhatTheOwnerHas_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text"); // null: none
    const QByteArray utf8 = u"é 你好"_s.toUtf8();
    QTest::newRow("UTF8_STRING") << "UTF8_STRING"_qba
                                 << "UTF8_STRING"_qba << utf8 << u"é 你好"_s;
    QTest::newRow("a MIME type") << "text/plain;charset=utf-8"_qba
                                 << "text/plain;charset=utf-8"_qba << utf8 << u"é 你好"_s;
    QTest::newRow("STRING") << "STRING"_qba
                            << "STRING"_qba
                            << "caf\xe9"_qba << u"café"_s;
    QTest::newRow("STRING in place of UTF8_STRING") << "UTF8_STRING"_qba
                                                    << "STRING"_qba
                                                    << "caf\xe9"_qba << u"café"_s;
    QTest::newRow("no text") << "image/png"_qba
                             << "image/png"_qba
                             << "\x89PNG"_qba << QString();
}

void TestX11Clipboard::textIsReadFromWhatTheOwnerHas()
{
    QFETCH(const QByteArray, target);
    QFETCH(const QByteArray, type);
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, text);
    Owner owner(m_session.displayName(), [&](const xcb_selection_request_event_t &request) {
        if (request.target == owner.peer.atom(target))
            owner.peer.answer(request, owner.peer.atom(type), bytes);
        else
            owner.peer.notify(request, XCB_NONE);
    });
    QCOMPARE(readText(clipboard()), text.isNull() ? std::nullopt : std::optional(text));
}

void TestX11Clipboard::targetsThatAreRefusedAreLeftOut()
{
    Owner owner(m_session.displayName(), [&](const xcb_selection_request_event_t &request) {
        X11Peer &peer = owner.peer;
        if (request.target == peer.atom("TARGETS"))
            // A made-up atom, one twice, side effects, and promises not kept.
            peer.answer(request,
                        {peer.atom("TARGETS"), 0x7ffffff, peer.atom("text/html"),
                         peer.atom("DELETE"), peer.atom("SAVE_TARGETS"), peer.atom("text/refused"),
                         peer.atom("text/empty-promise"), peer.atom("text/html"),
                         peer.atom("TIMESTAMP"), peer.atom("MULTIPLE"), peer.atom("PIXMAP"),
                         peer.atom("GTK_TEXT_BUFFER_CONTENTS")});
        else if (request.target == peer.atom("text/html"))
            peer.answer(request, request.target, "<i>x</i>");
        else if (request.target == peer.atom("text/empty-promise"))
            peer.notify(request, request.property); // and nothing there
        else
            peer.notify(request, XCB_NONE);
    });
    ClipboardContents expected;
    expected.items = {{"text/html", "text/html", 8, "<i>x</i>"}};
    QCOMPARE(readAll(clipboard()), expected);
    QCOMPARE(owner.requests, 4);
}

void TestX11Clipboard::silentOwnerCostsItsDeadlineAndNothingElse()
{
    Owner owner(m_session.displayName(), [](const auto &) {});
    QElapsedTimer timer;
    timer.start();
    std::optional<bool> silent;
    const auto task =
        clipboard().read(300ms, [&](const auto &contents) { silent = contents.has_value(); });
    // Meanwhile another reading comes and goes.
    QCOMPARE(readText(clipboard(), 50ms), std::nullopt);
    const auto secondEnded = timer.elapsed();
    QVERIFY2(secondEnded >= 50 && secondEnded < 200, qPrintable(QString::number(secondEnded)));
    QTRY_COMPARE(silent, false);
    QVERIFY2(timer.elapsed() >= 300 && timer.elapsed() < 450,
             qPrintable(QString::number(timer.elapsed())));
    QVERIFY(owner.requests > 0);

    clipboard().setText(u"ours"_s);
    QCOMPARE(readText(clipboard(), 200ms), u"ours"_s);
}

void TestX11Clipboard::lateAnswerIsNotTakenForAnothers()
{
    std::optional<xcb_selection_request_event_t> kept;
    Owner owner(m_session.displayName(), [&](const xcb_selection_request_event_t &request) {
        if (!kept) {
            kept = request;
            return;
        }
        const auto type = request.target;
        owner.peer.answer(*kept, type, "late");
        owner.peer.answer(request, type, "timely");
    });
    QCOMPARE(readText(clipboard(), 50ms), std::nullopt);
    QVERIFY(kept);
    QCOMPARE(readText(clipboard()), u"timely"_s);
    owner.peer.synchronise();
    QCOMPARE(owner.errors, 0);
}

void TestX11Clipboard::ownerThatDiesInTheMiddleGivesNothing()
{
    auto owner = std::make_unique<X11Peer>(m_session.displayName());
    int taken = 0;
    xcb_selection_request_event_t request{};
    owner->onEvent = [&](const xcb_generic_event_t &event) {
        const int type = event.response_type & 0x7f;
        if (type == XCB_SELECTION_REQUEST) {
            request = reinterpret_cast<const xcb_selection_request_event_t &>(event);
            const uint32_t size = sixMegabytes;
            const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
            xcb_change_window_attributes(owner->xcb(), request.requestor, XCB_CW_EVENT_MASK, &mask);
            xcb_change_property(owner->xcb(), XCB_PROP_MODE_REPLACE, request.requestor,
                                request.property, owner->atom("INCR"), 32, 1, &size);
            owner->notify(request, request.property);
        } else if (type == XCB_PROPERTY_NOTIFY &&
                   reinterpret_cast<const xcb_property_notify_event_t &>(event).state ==
                       XCB_PROPERTY_DELETE &&
                   ++taken == 1) {
            owner->setProperty(request.requestor, request.property, request.target, "half");
        }
    };
    owner->own(owner->atom("CLIPBOARD"), owner->createWindow(0));
    QElapsedTimer timer;
    timer.start();
    std::optional<bool> present;
    const auto task =
        clipboard().readText(10s, [&](const auto &text) { present = text.has_value(); });
    QTRY_COMPARE(taken, 2);
    owner.reset();
    QTRY_COMPARE(present, false);
    QVERIFY(timer.elapsed() < 2000); // at its death, not at the deadline
}

void TestX11Clipboard::cancelledReadingDeliversNothing()
{
    Owner owner(m_session.displayName(), [&](const xcb_selection_request_event_t &request) {
        owner.peer.answer(request, request.target, "x");
    });
    bool delivered = false;
    auto task = clipboard().readText(5s, [&](const auto &) { delivered = true; });
    task.cancel();
    QCOMPARE(readText(clipboard()), u"x"_s); // a later one has come round
    QVERIFY(!delivered);

    // Nor does one that is under way when everything ends.
    Owner silent(m_session.displayName(), [](const auto &) {});
    const auto last = clipboard().readText(60s, [&](const auto &text) {
        QVERIFY(!text);
        delivered = true;
    });
    QTRY_COMPARE(silent.requests, 1);
    QElapsedTimer timer;
    timer.start();
    m_desktop.reset();
    QVERIFY(timer.elapsed() < 500);
    QTRY_VERIFY(delivered);
}

QTEST_GUILESS_MAIN(TestX11Clipboard)
#include "tst_x11_clipboard.moc"
