#include "road.h"

#include <QFile>
#include <QTest>

#include <X11/keysym.h>

using namespace Qt::Literals::StringLiterals;
using namespace nivora::test;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

// The history window: searched, copied from, exported and cleared, with what the
// program itself has put there.
class TestHistory : public QObject
{
    Q_OBJECT

    Road m_road;

    void translate(const QString &source, const QString &translation)
    {
        QVERIFY(m_road.translate(source, translation));
        m_road.user->press({XK_Escape});
        QVERIFY(m_road.product->waitForPanelGone(patience));
    }
    // The rows that show, by their last lines.
    QStringList rows() const
    {
        QStringList translations;
        const auto list =
            m_road.tree->find(m_road.product->processId(), AccessibilityTree::hasRole(u"list"_s));
        const auto children = list ? list->children() : std::vector<AccessibleElement>();
        for (const AccessibleElement &row : children) {
            if (row.role() == u"list item")
                translations << row.name().section(u'\n', -1);
        }
        return translations;
    }
    bool hasCopied(const QString &text) const
    {
        return waitUntil([&] { return m_road.clipboard->text() == text; }, patience);
    }

private Q_SLOTS:
    void cleanup()
    {
        if (QTest::currentTestFailed())
            qWarning().noquote() << m_road.problem();
    }

    void rowsAreSearchedCopiedAndDeleted()
    {
        QVERIFY(m_road.begin({{u"appLanguage"_s, u"zh-Hans"_s}}));
        translate(u"请发一下报价"_s, u"見積もりを送ってください"_s);
        translate(u"谢谢你的报价"_s, u"お見積もりありがとうございます"_s);
        // The same text again is no request.
        m_road.pull(Trigger::DoubleShift);
        QVERIFY(m_road.product->waitForTranslation(u"お見積もりありがとうございます"_s, patience));
        QCOMPARE(m_road.server.requests().size(), 2);
        m_road.user->press({XK_Escape});
        QVERIFY(m_road.product->waitForPanelGone(patience));
        QVERIFY(m_road.ask(u"history"_s) && m_road.waitForWindow(u"history"_s));
        QTRY_COMPARE(rows(), QStringList({u"お見積もりありがとうございます"_s,
                                          u"見積もりを送ってください"_s}));

        const auto field = m_road.product->control(u"搜索原文或译文"_s);
        QVERIFY(field && field->isFocused());
        QVERIFY(field->setText(u" 送って "_s));
        QTRY_COMPARE(rows(), QStringList(u"見積もりを送ってください"_s));
        m_road.user->press({XK_Down});
        m_road.user->press({XK_Control_L, XK_c});
        QVERIFY(hasCopied(u"見積もりを送ってください"_s));
        m_road.user->press({XK_Menu});
        QVERIFY(m_road.choose({2}));
        QVERIFY(hasCopied(u"请发一下报价"_s));

        QVERIFY(m_road.press(u"导出所示记录…"_s));
        const auto name = m_road.tree->waitFor(
            m_road.product->processId(),
            [](const auto &element) {
                return element.role() == u"text" && element.isFocused() &&
                       element.text().endsWith(u".csv");
            },
            patience);
        const QString path = m_road.session.folder() + u"/history.csv"_s;
        QVERIFY(name && name->setText(path));
        m_road.user->press({XK_Return});
        QTRY_VERIFY(
            contentOf(path).endsWith("chinese,japanese,请发一下报价,見積もりを送ってください\r\n"));
        QCOMPARE(contentOf(path).count("\r\n"), 2); // the headings and what was found
        QCOMPARE(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther),
                 QFile::Permissions());

        m_road.user->press({XK_Shift_L, XK_F10}); // the same for keyboards without that key
        QVERIFY(m_road.choose({3}));
        QVERIFY(m_road.product->waitForControl(u"没有结果"_s, patience));
        QVERIFY(m_road.product->control(u"1"_s)); // in all
    }

    void allIsClearedAtOnceAndAnewFilled()
    {
        const auto field = m_road.product->control(u"搜索原文或译文"_s);
        QVERIFY(field && field->setText({}));
        QTRY_COMPARE(rows(), QStringList(u"お見積もりありがとうございます"_s));
        QVERIFY(m_road.press(u"清空"_s));
        QVERIFY(m_road.product->waitForControl(u"暂无翻译历史"_s, patience));
        translate(u"晚上好"_s, u"こんばんは"_s); // while the window is open
        QTRY_COMPARE(rows(), QStringList(u"こんばんは"_s));
    }
};

QTEST_GUILESS_MAIN(TestHistory)
#include "tst_history.moc"
