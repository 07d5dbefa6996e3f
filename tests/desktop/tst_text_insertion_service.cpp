#include "desktop/text_insertion_service.h"

#include "platform_memory/memory_desktop.h"

#include <QElapsedTimer>
#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;
using memory::MemoryClipboard;
using platform::KeyChord;

namespace {
const platform::ForeignWindow editor{77, 4711, u"Editor"_s, u"editor"_s};
constexpr KeyChord paste{Qt::Key_V, Qt::ControlModifier};

platform::ClipboardContents usersContents()
{
    return {{{"UTF8_STRING", "UTF8_STRING", 8, "mine"}, {"x/y", "x/y", 32, "abcd"}}};
}

} // namespace

class TestTextInsertionService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_desktop = std::make_unique<memory::MemoryDesktop>();
        m_desktop->windowSystem.setActiveWindow(editor);
        m_desktop->clipboard.putForeignContents(usersContents());
        m_pasted.clear();
        m_desktop->keySynthesizer.setTarget([this](const KeyChord &) {
            m_pasted << m_desktop->clipboard.paste().value_or(QString());
        });
    }

    void theTextIsPastedAndTheClipboardComesBack()
    {
        TextInsertionService service(m_desktop->services());
        service.insertViaPaste(u"译文\n第二行"_s, editor);
        QVERIFY(m_pasted.isEmpty()); // never at once
        QTRY_COMPARE(m_pasted, QStringList{u"译文\n第二行"_s});
        QVERIFY(m_desktop->clipboard.isConcealed());
        QCOMPARE(m_desktop->keySynthesizer.presses(), std::vector{paste});
        QTRY_COMPARE(m_desktop->clipboard.contents(), usersContents());
    }

    void anEmptyClipboardIsEmptyAgain()
    {
        m_desktop->clipboard.putForeignContents({});
        TextInsertionService service(m_desktop->services());
        service.insertViaPaste(u"x"_s, editor);
        QTRY_COMPARE(m_pasted.size(), 1);
        QTRY_VERIFY(m_desktop->clipboard.contents().items.empty());
    }

    void aSlowProgramIsWaitedFor()
    {
        QElapsedTimer sincePress;
        m_desktop->keySynthesizer.setTarget([&](const KeyChord &) { sincePress.start(); });
        TextInsertionService service(m_desktop->services());
        service.insertViaPaste(u"x"_s, editor);
        QTRY_VERIFY(sincePress.isValid());
        QVERIFY(m_desktop->clipboard.paste(4713)); // a clipboard manager, which is no sign
        QTRY_VERIFY(sincePress.elapsed() > 600);   // twice the usual time
        QCOMPARE(m_desktop->clipboard.paste(), u"x"_s);
        QTRY_COMPARE(m_desktop->clipboard.contents(), usersContents());
    }

    void anotherWindowIsNeverPastedInto()
    {
        m_desktop->windowSystem.setActiveWindow(
            platform::ForeignWindow{78, 4712, u"Other"_s, u"other"_s});
        TextInsertionService service(m_desktop->services());
        int told = 0;
        service.onTextLeftOnClipboard = [&] { ++told; };
        service.insertViaPaste(u"x"_s, editor);
        QTRY_COMPARE(told, 1);
        QCOMPARE(m_desktop->windowSystem.activationRequests().size(), 1u);
        QCOMPARE(presses(), 0u);
        QCOMPARE(m_desktop->clipboard.text(), u"x"_s); // there for the user to paste
    }

    void aProgramThatHangsIsNotPastedInto()
    {
        m_desktop->windowSystem.setResponding(false);
        TextInsertionService service(m_desktop->services());
        service.insertViaPaste(u"x"_s, editor);
        QTRY_VERIFY(!service.isUnderWay());
        QCOMPARE(presses(), 0u);
        QCOMPARE(m_desktop->clipboard.text(), u"x"_s);
    }

    void theFocusIsAskedForOnce()
    {
        m_desktop->windowSystem.setActiveWindow(std::nullopt);
        m_desktop->windowSystem.setActivatable(editor);
        TextInsertionService service(m_desktop->services());
        service.insertViaPaste(u"x"_s, editor);
        QTRY_COMPARE(m_pasted, QStringList{u"x"_s});
        QCOMPARE(m_desktop->windowSystem.activationRequests().size(), 1u);
        QTRY_COMPARE(m_desktop->clipboard.contents(), usersContents());
    }

    void aSecondTextKeepsTheUsersClipboard()
    {
        TextInsertionService service(m_desktop->services());
        service.insertViaPaste(u"one"_s, editor);
        QTRY_COMPARE(m_pasted.size(), 1);
        service.insertViaPaste(u"two"_s, editor);
        QTRY_COMPARE(m_pasted, (QStringList{u"one"_s, u"two"_s}));
        QTRY_COMPARE(m_desktop->clipboard.contents(), usersContents());
    }

    void terminalsAreSentTheirOwnKeys_data()
    {
        QTest::addColumn<QString>("className");
        QTest::addColumn<std::vector<KeyChord>>("presses");
        QTest::addColumn<int>("told");
        QTest::newRow("VTE") << u"Xfce4-terminal"_s
                             << std::vector{KeyChord{Qt::Key_V,
                                                     Qt::ControlModifier | Qt::ShiftModifier}}
                             << 0;
        QTest::newRow("xterm") << u"XTerm"_s << std::vector<KeyChord>{} << 1;
    }

    void terminalsAreSentTheirOwnKeys()
    {
        QFETCH(QString, className);
        const platform::ForeignWindow terminal{79, 4713, className, {}};
        m_desktop->windowSystem.setActiveWindow(terminal);
        TextInsertionService service(m_desktop->services());
        int told = 0;
        service.onTextLeftOnClipboard = [&] { ++told; };
        service.insertViaPaste(u"x"_s, terminal);
        QTRY_VERIFY(told > 0 || presses() > 0);
        QCOMPARE(m_desktop->clipboard.text(), u"x"_s);
        QTEST(m_desktop->keySynthesizer.presses(), "presses");
        QTEST(told, "told");
    }

    void aClipboardThatDoesNotAnswerCostsOnlyItself()
    {
        m_desktop->clipboard.putForeignContents(usersContents(), MemoryClipboard::Owner::Silent);
        TextInsertionService service(m_desktop->services());
        service.insertViaPaste(u"x"_s, editor);
        QTRY_COMPARE(m_pasted, QStringList{u"x"_s});
    }

private:
    std::unique_ptr<memory::MemoryDesktop> m_desktop;
    QStringList m_pasted;

    size_t presses() const { return m_desktop->keySynthesizer.presses().size(); }
};

QTEST_GUILESS_MAIN(TestTextInsertionService)
#include "tst_text_insertion_service.moc"
