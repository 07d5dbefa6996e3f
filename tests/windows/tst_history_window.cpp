#include "windows/history_window_controller.h"

#include "../stores/history_fixture.h"
#include "platform_memory/memory_clipboard.h"

#include <QApplication>
#include <QLineEdit>
#include <QListView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

using namespace nivora;
using namespace nivora::test;
using namespace Qt::Literals::StringLiterals;

// The list over a real store.
class TestHistoryWindow : public QObject
{
    Q_OBJECT

    std::unique_ptr<History> m_history;
    memory::MemoryClipboard m_clipboard;
    std::unique_ptr<HistoryWindowController> m_controller;
    QListView *m_list = nullptr;

    int rows() const { return m_list->model()->rowCount(); }
    QString row(int number) const { return m_list->model()->index(number, 0).data().toString(); }

private Q_SLOTS:
    void init()
    {
        m_controller.reset();
        m_history = std::make_unique<History>();
        HistoryStore &store = m_history->open();
        Sql(m_history->path)(
            "WITH RECURSIVE c(x) AS (SELECT 0 UNION ALL SELECT x+1 FROM c WHERE x<2099) "
            "INSERT INTO history SELECT printf('%08X-0000-4000-8000-000000000000',x),1000+x,"
            "'source '||x,'text '||x,'chinese','english' FROM c;");
        m_controller = std::make_unique<HistoryWindowController>(store, m_clipboard);
        m_controller->show();
        m_list = nullptr;
        for (const QWidget *window : QApplication::topLevelWidgets())
            m_list = m_list ? m_list : window->findChild<QListView *>();
        QTRY_COMPARE(rows(), HistoryStore::displayLimit);
    }

    void theListKeepsItsPlaceWhenRowsComeAndGo()
    {
        QSignalSpy resets(m_list->model(), &QAbstractItemModel::modelReset);
        m_list->setCurrentIndex(m_list->model()->index(700, 0));
        const QString current = row(700);
        m_history->store->record(u"new"_s, u"neu"_s, Language::English, Language::Chinese);
        QTRY_VERIFY(row(0).endsWith(u"neu"_s));
        QCOMPARE(m_list->currentIndex().data().toString(), current);
        QCOMPARE(rows(), HistoryStore::displayLimit);
        m_history->store->remove(m_history->store->entries()[5].id);
        QTRY_COMPARE(m_list->currentIndex().row(), 700);
        QTRY_COMPARE(rows(), HistoryStore::displayLimit); // an older one moved up
        QCOMPARE(m_list->currentIndex().data().toString(), current);
        QVERIFY(resets.isEmpty());

        m_list->window()->findChild<QLineEdit *>()->setText(u"text 77"_s);
        QTRY_COMPARE(rows(), 11); // and 770 to 779
        QCOMPARE(m_list->verticalScrollBar()->value(), 0);
    }

    void everyRowFollowsTheWidth()
    {
        Sql(m_history->path)("UPDATE history SET translation=replace(hex(zeroblob(40)),'0','ab ')"
                             "||translation;");
        m_history->store->applySearch(u"ab"_s);
        QTRY_COMPARE(m_list->model()->rowCount(), HistoryStore::displayLimit);
        QTRY_VERIFY(row(0).contains(u"ab ab"_s));
        const auto height = [this](int number) {
            return m_list->visualRect(m_list->model()->index(number, 0)).height();
        };
        QWidget *window = m_list->window();
        const int wide = height(0);
        window->resize(window->width() / 2, window->height());
        QTRY_VERIFY(height(0) > wide);
        m_list->setCurrentIndex(m_list->model()->index(900, 0));
        QTRY_COMPARE(height(900), height(0)); // and those between it and the top
        QTRY_COMPARE(height(1999), height(0));
        QVERIFY(m_list->viewport()->rect().contains(m_list->visualRect(m_list->currentIndex())));
    }

    void foreignAndEndlessEntriesAreShown()
    {
        Sql(m_history->path)(
            "INSERT INTO history SELECT 'not an id',9e9,"
            "replace(hex(zeroblob(600000)),'0','長'),replace(hex(zeroblob(600000)),'0','a b '),"
            "'klingon','elvish';");
        m_history->store->applySearch(u"長"_s);
        QTRY_COMPARE(rows(), 1);
        QVERIFY2(row(0).startsWith(u"自动 → 中文\n"), qUtf8Printable(row(0).left(40)));
        QVERIFY(row(0).size() < 10'000);
        QVERIFY(m_list->visualRect(m_list->model()->index(0, 0)).height() < 400);
        m_list->setCurrentIndex(m_list->model()->index(0, 0));
        QTest::keyClick(m_list, Qt::Key_C, Qt::ControlModifier); // all of it
        QTRY_COMPARE(m_clipboard.text().value_or(QString()).size(), 4 * 1200000);
    }
};

QTEST_MAIN(TestHistoryWindow)
#include "tst_history_window.moc"
