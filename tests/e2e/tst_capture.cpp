#include "road.h"

#include "localcloud/event_stream.h"

#include <QDir>
#include <QTest>

#include <X11/keysym.h>

#include <csignal>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using namespace nivora::test;

namespace {

const auto source = u"来週の月曜日に見積書をお送りします。"_s;
const auto translation = u"下周一给您发报价单。"_s;

const X11Driver::Condition overlay = [](const X11Driver::Window &window) {
    return window.instanceName == u"nivora-screencapture";
};

// The process that lets the user mark a region; 0 if there is none.
int markingProcess(const DesktopSession &session)
{
    for (const QString &process : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
        QFile environment(u"/proc/%1/environ"_s.arg(process));
        if (QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(process))
                .endsWith(u"/nivora-screencapture") &&
            environment.open(QIODevice::ReadOnly) &&
            environment.readAll().contains(session.folder().toUtf8()))
            return process.toInt();
    }
    return 0;
}

} // namespace

// From a region of the screen to its translation.
class TestCapture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_road.begin({{u"saveHistory"_s, false}}));
        m_road.server.setHandler(
            [](const localcloud::Request &) { return localcloud::eventStream({translation}); });
        QVERIFY(m_road.open(Editor::Toolkit::Gtk, source + u"\n\n\n"_s, false));
        m_road.user->press({XK_Control_L, XK_End}); // the caret is no letter
        // Of the text area the first line, with some room around it.
        m_line = QRect(m_road.editor->textArea().topLeft() - QPoint(2, 2), QSize(420, 26));
    }

    void cleanup()
    {
        if (QTest::currentTestFailed())
            qWarning().noquote() << m_road.problem();
        QVERIFY(m_road.user->waitForGone(overlay, patience));
        QCOMPARE(temporaryFiles(), QStringList());
        m_road.user->press({XK_Escape});
        QVERIFY(m_road.product->waitForPanelGone(patience));
    }

    void aMarkedRegionIsTranslated()
    {
        QVERIFY(beginCapture());
        m_road.user->drag(m_line.topLeft(), m_line.bottomRight());
        QVERIFY2(translates(1), qUtf8Printable(m_road.prompt(0)));
    }

    void theKeyboardMarksToo()
    {
        QVERIFY(beginCapture());
        m_road.user->movePointer(m_line.topLeft());
        m_road.user->press({XK_Return});
        for (int x = 0; x < m_line.width(); x += 10)
            m_road.user->press({XK_Right});
        for (int y = 0; y < m_line.height(); ++y)
            m_road.user->press({XK_Shift_L, XK_Down});
        m_road.user->press({XK_Return});
        QVERIFY2(translates(2), qUtf8Printable(m_road.prompt(1)));
    }

    void givingUpLeavesNothing_data()
    {
        QTest::addColumn<std::function<void(Road &)>>("giveUp");
        const auto row = [](const char *name, std::function<void(Road &)> giveUp) {
            QTest::newRow(name) << giveUp;
        };
        row("Esc", [](Road &road) { road.user->press({XK_Escape}); });
        row("right button", [](Road &road) { road.user->click(X11Driver::Button::Right); });
        row("nothing but ground", [](Road &road) { road.user->drag({900, 700}, {1000, 750}); });
        row("killed", [](Road &road) { QCOMPARE(kill(markingProcess(road.session), SIGKILL), 0); });
    }

    void givingUpLeavesNothing()
    {
        QFETCH(const std::function<void(Road &)>, giveUp);
        const auto requests = m_road.server.requests().size();
        QVERIFY(beginCapture());
        giveUp(m_road);
        QVERIFY(m_road.user->waitForGone(overlay, patience));
        // At once another one, in place of which comes a third.
        QVERIFY(beginCapture());
        const int second = markingProcess(m_road.session);
        const auto isReplaced = [&] {
            const int now = markingProcess(m_road.session);
            return now != 0 && now != second && m_road.user->find(overlay);
        };
        QVERIFY(m_road.ask(u"capture"_s) && waitUntil(isReplaced, patience));
        m_road.user->press({XK_Escape});
        QVERIFY(m_road.user->waitForGone(overlay, patience));
        QVERIFY(!m_road.user->find(Product::panel()));
        QCOMPARE(m_road.server.requests().size(), requests);
    }

private:
    bool beginCapture()
    {
        const QImage before = m_road.session.screenshot();
        return m_road.ask(u"capture"_s) && m_road.user->waitForMapped(overlay, patience) &&
               waitUntil([&] { return m_road.session.screenshot() != before; }, patience);
    }

    bool translates(qsizetype requests)
    {
        return m_road.product->waitForTranslation(translation, patience) &&
               m_road.waitForRequests(requests) &&
               m_road.prompt(requests - 1).endsWith(u"\n\n"_s + source);
    }

    QStringList temporaryFiles() const
    {
        return QDir(m_road.session.folder() + u"/tmp"_s).entryList({u"nivora_ocr_*"_s});
    }

    Road m_road;
    QRect m_line;
};

QTEST_GUILESS_MAIN(TestCapture)
#include "tst_capture.moc"
