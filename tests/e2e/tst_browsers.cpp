#include "road.h"

#include "support/browser.h"

#include "localcloud/event_stream.h"

#include <QTest>

#include <X11/keysym.h>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using namespace nivora::test;

using Kind = Browser::Kind;

namespace {

constexpr int gapToSelection = 6;
constexpr int gapToPointer = 12;
// A page places its text between pixels.
constexpr int tolerance = 3;
constexpr int bullet = 20;
constexpr QPoint pointer{500, 450};

const QString translation = u"訳文 🎈"_s;

enum class Target {
    Field,    // takes the translation
    Password, // takes text, and shows none
    Page,     // takes nothing
};

} // namespace

// What the product makes of the kinds of things that there are in a page; their
// texts are those of tst_applications.
class TestBrowsers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void elementsOfAPage_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("selected"); // or how it ends, with the mouse from #a to #b
        QTest::addColumn<Target>("target");
        const std::tuple<const char *, QString, QString, Target> elements[]{
            {"line", u"<input data-focus value='输入 👍🏽 input'>"_s,
             u"输入 👍🏽 input"_s, Target::Field},
            {"rich text",
             u"<div contenteditable data-focus>前 <b>粗 👍🏽</b> 后 <a href='x'>链接</a> 尾</div>"_s,
             u"前 粗 👍🏽 后 链接 尾"_s, Target::Field},
            {"rich lines", u"<div contenteditable data-focus>第一行<div>第二行</div></div>"_s,
             u"第一行\n第二行"_s, Target::Field},
            {"password", u"<input type='password' data-focus value='geheim'>"_s, u"geheim"_s,
             Target::Password},
            {"words", u"<p>前面 <b id='a'>两个</b><i id='b'>词语🎈</i> 后面</p>"_s, u"词语🎈"_s,
             Target::Page},
            {"paragraphs",
             u"<p>前面 <b id='a'>第一段</b></p><ul><li>列表 <b id='b'>最后</b></ul>"_s, u"最后"_s,
             Target::Page},
        };
        for (const auto &[browser, kind] :
             {std::pair("Firefox", Kind::Firefox), std::pair("Chromium", Kind::Chromium),
              std::pair("accessible Chromium", Kind::AccessibleChromium)}) {
            for (const auto &[name, html, selected, target] : elements)
                QTest::addRow("%s: %s", browser, name) << kind << html << selected << target;
        }
    }

    void elementsOfAPage()
    {
        QFETCH(const Kind, kind);
        QFETCH(const QString, html);
        QFETCH(const QString, selected);
        QFETCH(const Target, target);
        QVERIFY(enter(kind));
        Road &road = *m_road;
        QVERIFY(m_browser->showHtml(html));
        QVERIFY2(target == Target::Page ? m_browser->drag(u"a"_s, u"b"_s, selected)
                                        : m_browser->selectAll(selected),
                 qUtf8Printable(m_browser->selectedText()));
        QVERIFY(road.clipboard->offerText(u"from before"_s));
        road.user->movePointer(pointer);
        const QString text = m_browser->selectedText();
        const auto requests = road.server.requests().size();
        road.server.enqueue(localcloud::eventStream({translation}));

        road.pull(Trigger::DoubleShift);
        const auto panel = road.product->waitForPanel(patience);
        QVERIFY(panel);
        if (target == Target::Password) {
            const auto source = road.product->waitForControl(u"原文"_s, patience);
            QVERIFY(source && source->text().isEmpty());
            QCOMPARE(road.server.requests().size(), requests);
        } else {
            QVERIFY(road.waitForRequests(requests + 1));
            QVERIFY2(road.prompt(requests).endsWith(u"\n\n"_s + text.trimmed()),
                     qUtf8Printable(road.prompt(requests)));
            QVERIFY(road.product->waitForTranslation(translation, patience));
        }
        if (target == Target::Page) {
            // Anywhere from left to right along the selection, the bullet of a list
            // included, which is not what the page counts as selected.
            const QRectF place = kind == Kind::Chromium
                                     ? QRectF(pointer, QSizeF(0, gapToPointer - gapToSelection))
                                     : m_browser->selectionOnPage();
            const QPointF corner = panel->geometry.topLeft() - QPointF(0, gapToSelection);
            QVERIFY2(std::abs(corner.y() - place.bottom()) <= tolerance &&
                         corner.x() >= place.left() - bullet && corner.x() <= place.right(),
                     qUtf8Printable(QDebug::toString(panel->geometry) + QDebug::toString(place)));
        }
        // Where nothing is known of the element, the user may try.
        const bool isOffered = target == Target::Field || kind == Kind::Chromium;
        QCOMPARE(road.product->control(u"Ctrl+↩ 替换原文"_s).has_value(),
                 isOffered && target != Target::Password);
        if (target == Target::Field) {
            road.user->press({XK_Control_L, XK_Return});
            QVERIFY2(waitUntil([&] { return m_browser->content() == translation; }, patience),
                     qUtf8Printable(m_browser->content()));
        } else {
            road.user->press({XK_Escape});
        }
        QVERIFY(road.product->waitForPanelGone(patience));
        QVERIFY(waitUntil([&] { return road.clipboard->text() == u"from before"_s; }, patience));
    }

    void cleanup()
    {
        if (QTest::currentTestFailed())
            leave();
        else if (m_road)
            m_road->server.dropAnswers();
    }

    void cleanupTestCase() { leave(); }

private:
    bool enter(Kind kind)
    {
        if (m_browser && m_kind == kind)
            return true;
        leave();
        m_kind = kind;
        m_road = std::make_unique<Road>();
        if (!m_road->begin())
            return false;
        m_browser = std::make_unique<Browser>(
            Application::Desk{m_road->session, *m_road->user, *m_road->tree, *m_road->clipboard},
            kind);
        return m_browser->open();
    }

    void leave()
    {
        m_browser.reset();
        m_road.reset();
    }

    Kind m_kind = Kind::Firefox;
    std::unique_ptr<Road> m_road;
    std::unique_ptr<Browser> m_browser;
};

QTEST_GUILESS_MAIN(TestBrowsers)
#include "tst_browsers.moc"
