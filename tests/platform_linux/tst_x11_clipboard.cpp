#include "platform_linux/x11_desktop.h"
#include "support/clipboard_peer.h"
#include "support/clipboard_reading.h"
#include "support/desktop_session.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>
#include <QThread>

#include <atomic>

using namespace nivora;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using linuxdesktop::X11Desktop;
using platform::Clipboard;
using platform::ClipboardContents;
using test::noise;
using test::readAll;
using test::readText;
using test::sixMegabytes;
using test::X11Peer;

class TestX11Clipboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_session.start({.windowManager = false, .accessibility = false}),
                 qPrintable(m_session.error()));
    }

    void init()
    {
        m_desktop = std::make_unique<X11Desktop>(m_session.displayName());
        QVERIFY(m_desktop->isValid());
    }

    void cleanup() { m_desktop.reset(); }

    void everyFormatSurvivesTheRoundTrip()
    {
        ClipboardContents contents;
        contents.items = {
            {"UTF8_STRING", "UTF8_STRING", 8, u"译文 👋\r\n"_s.toUtf8()},
            {"text/html", "text/html", 8, "<b>bold</b>"},
            {"text/uri-list", "text/uri-list", 8, "file:///tmp/a%20b\r\n"},
            {"x-special/gnome-copied-files", "x-special/gnome-copied-files", 8,
             "copy\nfile:///tmp"},
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

    void sixMegabytesComeFromAndGoToOtherPrograms()
    {
        const QByteArray bytes = noise(sixMegabytes);
        QFile file(m_session.folder() + u"/bytes"_s);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        QProcess *owner = m_session.launch(
            u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"clipboard"_s, u"-target"_s,
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

    void textIsOfferedInTheFormsThatFitIt_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("latin1");
        QTest::newRow("Latin-1") << u"Grüße\n"_s << true;
        QTest::newRow("Chinese and an emoji") << u"你好 👋"_s << false;
    }

    void textIsOfferedInTheFormsThatFitIt()
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

    void severalTargetsAreConvertedAtOnce()
    {
        clipboard().setText(u"text"_s);
        QCOMPARE(readText(clipboard()), u"text"_s); // it is there

        X11Peer peer(m_session.displayName());
        const auto window = peer.createWindow(0);
        const auto list = peer.atom("LIST");
        const auto first = peer.atom("FIRST");
        const xcb_atom_t pairs[] = {peer.atom("UTF8_STRING"), first, peer.atom("image/png"),
                                    peer.atom("SECOND")};
        xcb_change_property(peer.xcb(), XCB_PROP_MODE_REPLACE, window, list, peer.atom("ATOM_PAIR"),
                            32, 4, pairs);
        xcb_atom_t answered = XCB_NONE;
        peer.onEvent = [&](const xcb_generic_event_t &event) {
            if ((event.response_type & 0x7f) == XCB_SELECTION_NOTIFY)
                answered = reinterpret_cast<const xcb_selection_notify_event_t &>(event).property;
        };
        xcb_convert_selection(peer.xcb(), window, peer.atom("CLIPBOARD"), peer.atom("MULTIPLE"),
                              list, XCB_CURRENT_TIME);
        peer.synchronise();
        QTRY_COMPARE(answered, list);
        QCOMPARE(peer.property(window, first), "text"_qba);
        QCOMPARE(clipboard().fetchCount(QCoreApplication::applicationPid()), 1);
        // The one that could not be converted is struck out.
        const xcb_atom_t struck[] = {pairs[0], pairs[1], pairs[2], XCB_NONE};
        QCOMPARE(peer.property(window, list),
                 QByteArray(reinterpret_cast<const char *>(struck), sizeof struck));
    }

    void managerTakesOverAtTheEnd_data()
    {
        QTest::addColumn<Clipboard::Privacy>("privacy");
        QTest::addColumn<bool>("answers");
        QTest::addColumn<int>("asked");
        QTest::newRow("text") << Clipboard::Privacy::Ordinary << true << 1;
        QTest::newRow("concealed text") << Clipboard::Privacy::Concealed << true << 0;
        QTest::newRow("a manager that hangs") << Clipboard::Privacy::Ordinary << false << 1;
    }

    void managerTakesOverAtTheEnd()
    {
        QFETCH(const Clipboard::Privacy, privacy);
        QFETCH(const bool, answers);
        QFETCH(const int, asked);
        clipboard().setText(u"text"_s, privacy);
        QCOMPARE(readText(clipboard()), u"text"_s);

        // The main thread waits for the end: the manager is served by another.
        std::atomic<bool> ready = false;
        std::atomic<bool> ended = false;
        int requests = 0;
        QByteArray kept;
        const auto manager = std::unique_ptr<QThread>(QThread::create([&] {
            X11Peer peer(m_session.displayName());
            const auto window = peer.createWindow(0);
            xcb_selection_request_event_t request{};
            peer.onEvent = [&](const xcb_generic_event_t &event) {
                const int type = event.response_type & 0x7f;
                if (type == XCB_SELECTION_REQUEST) {
                    request = reinterpret_cast<const xcb_selection_request_event_t &>(event);
                    requests += request.target == peer.atom("SAVE_TARGETS");
                    if (answers)
                        xcb_convert_selection(peer.xcb(), window, peer.atom("CLIPBOARD"),
                                              peer.atom("UTF8_STRING"), peer.atom("KEPT"),
                                              XCB_CURRENT_TIME);
                } else if (type == XCB_SELECTION_NOTIFY) {
                    kept = peer.property(window, peer.atom("KEPT"));
                    peer.notify(request, request.property);
                }
            };
            peer.own(peer.atom("CLIPBOARD_MANAGER"), window);
            ready = true;
            while (!ended) {
                peer.synchronise();
                QThread::msleep(2);
            }
        }));
        manager->start();
        QTRY_VERIFY(ready);
        QElapsedTimer timer;
        timer.start();
        m_desktop.reset();
        const auto took = timer.elapsed();
        ended = true;
        manager->wait();
        QCOMPARE(requests, asked);
        QCOMPARE(kept, asked && answers ? "text"_qba : QByteArray());
        QVERIFY2(answers ? took < 400 : took >= 450 && took < 900,
                 qPrintable(QString::number(took)));
    }

private:
    Clipboard &clipboard() { return m_desktop->clipboard(); }

    test::DesktopSession m_session;
    std::unique_ptr<X11Desktop> m_desktop;
};

QTEST_GUILESS_MAIN(TestX11Clipboard)
#include "tst_x11_clipboard.moc"
