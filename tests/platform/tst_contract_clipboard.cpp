#include "platform_linux/x11_desktop.h"
#include "platform_memory/memory_clipboard.h"
#include "support/clipboard_peer.h"
#include "support/clipboard_reading.h"
#include "support/desktop_session.h"
#include "support/wait.h"

#include <QTest>

#include <csignal>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using platform::Clipboard;
using platform::ClipboardContents;

namespace {

// A clipboard under test and the other programs that share it.
class Desk
{
public:
    virtual ~Desk() = default;
    virtual Clipboard &clipboard() = 0;
    virtual void putForeignText(const QString &text) = 0;
    virtual void putSilentOwner() = 0;
    // What another program gets when it pastes.
    virtual std::optional<QString> paste() = 0;
    virtual bool isConcealed() = 0;
};

class MemoryDesk final : public Desk
{
public:
    Clipboard &clipboard() override { return m_clipboard; }
    void putForeignText(const QString &text) override { m_clipboard.putForeignText(text); }
    void putSilentOwner() override
    {
        m_clipboard.putForeignContents({{{"UTF8_STRING"_ba, "UTF8_STRING"_ba, 8, "never"_ba}}},
                                       memory::MemoryClipboard::Owner::Silent);
    }
    std::optional<QString> paste() override { return m_clipboard.paste(); }
    bool isConcealed() override { return m_clipboard.isConcealed(); }

private:
    memory::MemoryClipboard m_clipboard;
};

class X11Desk final : public Desk
{
public:
    explicit X11Desk(test::DesktopSession &session)
        : m_session(session)
        , m_desktop(session.displayName())
        , m_peer(session)
    {
    }
    ~X11Desk() override
    {
        if (m_silent)
            ::kill(static_cast<pid_t>(m_silent->processId()), SIGKILL);
    }

    Clipboard &clipboard() override { return m_desktop.clipboard(); }
    void putForeignText(const QString &text) override { QVERIFY(m_peer.offerText(text)); }
    void putSilentOwner() override
    {
        const auto before = clipboard().changeCount();
        m_silent = m_session.launch(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"clipboard"_s});
        QVERIFY(m_silent);
        m_silent->write("never");
        m_silent->closeWriteChannel();
        QVERIFY(test::waitUntil([&] { return clipboard().changeCount() > before; }, 10s));
        ::kill(static_cast<pid_t>(m_silent->processId()), SIGSTOP);
    }
    std::optional<QString> paste() override { return m_peer.text(); }
    bool isConcealed() override { return m_peer.read("x-kde-passwordManagerHint") == "secret"_ba; }

private:
    test::DesktopSession &m_session;
    linuxdesktop::X11Desktop m_desktop;
    test::ClipboardPeer m_peer;
    QProcess *m_silent = nullptr;
};

} // namespace

// What every clipboard does, real or not.
class tst_contract_clipboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<bool>("real");
        QTest::newRow("memory") << false;
        QTest::newRow("X11") << true;
    }

    void initTestCase()
    {
        QVERIFY2(m_session.start({.windowManager = false, .accessibility = false}),
                 qPrintable(m_session.error()));
    }

    void init()
    {
        QFETCH_GLOBAL(const bool, real);
        if (real)
            m_desk = std::make_unique<X11Desk>(m_session);
        else
            m_desk = std::make_unique<MemoryDesk>();
        m_clipboard = &m_desk->clipboard();
    }

    void cleanup() { m_desk.reset(); }

    void emptyHoldsNothing()
    {
        m_desk->putForeignText(u"another's"_s);
        m_clipboard->setContents({});
        QTRY_VERIFY(read() == ClipboardContents());
        QVERIFY(!readText());
        QVERIFY(!m_desk->paste());
    }

    void readsWhatAnotherProgramPutThere()
    {
        const auto before = m_clipboard->changeCount();
        m_desk->putForeignText(u"\u4f60\U0001F388\r\nline"_s);
        QTRY_VERIFY(m_clipboard->changeCount() > before);
        QCOMPARE(readText(), u"\u4f60\U0001F388\r\nline"_s);
        const auto contents = read();
        QVERIFY(contents);
        QVERIFY(std::ranges::any_of(contents->items, [](const auto &item) {
            return item.data == u"\u4f60\U0001F388\r\nline"_s.toUtf8();
        }));
    }

    void textIsHandedOutAndCounted()
    {
        const auto before = m_clipboard->changeCount();
        m_clipboard->setText(u"mine \U0001F388"_s);
        QTRY_VERIFY(m_clipboard->changeCount() > before);
        QCOMPARE(m_clipboard->fetchCount(), 0);
        QCOMPARE(m_desk->paste(), u"mine \U0001F388"_s);
        QTRY_VERIFY(m_clipboard->fetchCount() > 0);
        QVERIFY(!m_desk->isConcealed());

        m_clipboard->setText(u"next"_s, Clipboard::Privacy::Concealed);
        QTRY_VERIFY(m_desk->isConcealed());
        QCOMPARE(m_clipboard->fetchCount(), 0); // a manager that looks has not used the text
        QCOMPARE(m_desk->paste(), u"next"_s);
        QCOMPARE(readText(), u"next"_s);
    }

    void contentsComeBackByteForByte()
    {
        const ClipboardContents contents{
            {{"UTF8_STRING"_ba, "UTF8_STRING"_ba, 8, "text"_ba},
             {"text/html"_ba, "text/html"_ba, 8, "<b>text</b>"_ba},
             {"image/x-unknown"_ba, "image/x-unknown"_ba, 8, QByteArray(300'000, '\x7f')},
             {"words"_ba, "INTEGER"_ba, 32, QByteArray("\x01\0\0\0\xff\xff\xff\x7f", 8)}}};
        m_clipboard->setContents(contents);
        QCOMPARE(m_desk->paste(), u"text"_s);
        auto found = read();
        QVERIFY(found);
        // The order is the owner's affair.
        auto expected = contents;
        for (auto *sorted : {&*found, &expected})
            std::ranges::sort(sorted->items, {}, &ClipboardContents::Item::format);
        QVERIFY(*found == expected);
    }

    void silentOwnerCostsTheDeadline()
    {
        m_desk->putSilentOwner();
        for (const bool asText : {false, true}) {
            const auto start = test::Clock::now();
            QVERIFY(asText ? !readText(100ms).has_value() : !read(100ms).has_value());
            const auto took = test::millisecondsBetween(start, test::Clock::now());
            QVERIFY2(took >= 95 && took < 250, qPrintable(QString::number(took)));
        }
        m_clipboard->setText(u"taken back"_s);
        QTRY_COMPARE(readText(), u"taken back"_s);
    }

    void nothingArrivesAfterCancelling()
    {
        m_desk->putForeignText(u"text"_s);
        bool delivered = false;
        auto task = m_clipboard->readText(1s, [&](const auto &) { delivered = true; });
        task.cancel();
        // A second read is answered after the first would have been.
        QTRY_COMPARE(readText(), u"text"_s);
        QVERIFY(!delivered);
    }

private:
    std::optional<ClipboardContents> read(std::chrono::milliseconds deadline = 2s)
    {
        return test::readAll(*m_clipboard, deadline);
    }
    std::optional<QString> readText(std::chrono::milliseconds deadline = 2s)
    {
        return test::readText(*m_clipboard, deadline);
    }

    test::DesktopSession m_session;
    std::unique_ptr<Desk> m_desk;
    Clipboard *m_clipboard = nullptr;
};

QTEST_GUILESS_MAIN(tst_contract_clipboard)
#include "tst_contract_clipboard.moc"
