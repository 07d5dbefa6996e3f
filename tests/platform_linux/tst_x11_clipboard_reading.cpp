#include "platform_linux/x11_desktop.h"
#include "support/clipboard_reading.h"
#include "support/desktop_session.h"

#include <QElapsedTimer>
#include <QTest>

using namespace nivora;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using linuxdesktop::X11Desktop;
using platform::Clipboard;
using platform::ClipboardContents;
using test::Owner;
using test::readAll;
using test::readText;
using test::sixMegabytes;
using test::X11Peer;

// What other programs offer, and how badly they may behave.
class TestX11ClipboardReading : public QObject
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

    void textIsReadFromWhatTheOwnerHas_data()
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

    void textIsReadFromWhatTheOwnerHas()
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

    void targetsThatAreRefusedAreLeftOut()
    {
        Owner owner(m_session.displayName(), [&](const xcb_selection_request_event_t &request) {
            X11Peer &peer = owner.peer;
            if (request.target == peer.atom("TARGETS"))
                // A made-up atom, one twice, side effects, and promises not kept.
                peer.answer(request,
                            {peer.atom("TARGETS"), 0x7ffffff, peer.atom("text/html"),
                             peer.atom("DELETE"), peer.atom("SAVE_TARGETS"),
                             peer.atom("text/refused"), peer.atom("text/empty-promise"),
                             peer.atom("text/html"), peer.atom("TIMESTAMP"), peer.atom("MULTIPLE"),
                             peer.atom("PIXMAP"), peer.atom("GTK_TEXT_BUFFER_CONTENTS")});
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

    void silentOwnerCostsItsDeadlineAndNothingElse()
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

    void lateAnswerIsNotTakenForAnothers()
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

    void ownerThatDiesInTheMiddleGivesNothing()
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
                xcb_change_window_attributes(owner->xcb(), request.requestor, XCB_CW_EVENT_MASK,
                                             &mask);
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

    void theEndDoesNotWaitForAReading()
    {
        bool delivered = false;
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

private:
    Clipboard &clipboard() { return m_desktop->clipboard(); }

    test::DesktopSession m_session;
    std::unique_ptr<X11Desktop> m_desktop;
};

QTEST_GUILESS_MAIN(TestX11ClipboardReading)
#include "tst_x11_clipboard_reading.moc"
