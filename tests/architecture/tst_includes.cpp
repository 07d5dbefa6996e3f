#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

using Graph = QMap<QString, QStringList>;

// Every cycle that a depth-first walk closes, as "a -> b -> a".
class CycleSearch
{
public:
    explicit CycleSearch(const Graph &graph)
        : m_graph(graph)
    {
        for (auto node = graph.keyBegin(); node != graph.keyEnd(); ++node)
            visit(*node);
    }

    QStringList cycles() const { return m_cycles; }

private:
    void visit(const QString &node)
    {
        if (const auto start = m_path.indexOf(node); start >= 0) {
            m_cycles.append((m_path.mid(start) << node).join(" -> "_L1));
            return;
        }
        if (m_done.contains(node))
            return;
        m_path.append(node);
        for (const auto &next : m_graph.value(node))
            visit(next);
        m_path.removeLast();
        m_done.insert(node);
    }

    const Graph &m_graph;
    QStringList m_path;
    QSet<QString> m_done;
    QStringList m_cycles;
};

// Reads the include lines of a source tree and holds them against the rules of
// who may see whom.
//
// A room is a folder right below the tree's root, or one of platform's backends;
// its public headers lie below <room's folder>/include/<room>/. The program's
// entry, main.cpp at the root, is a room by itself: "main".
class IncludeChecker
{
public:
    // For every room the rooms that it may include.
    using Rules = QMap<QString, QSet<QString>>;

    // `generated` names headers that only the build makes.
    explicit IncludeChecker(const QString &root, const QSet<QString> &generated = {})
    {
        const QDir folder(root);
        QMap<QString, QString> publicHeaders; // "core/language.h" -> "core/include/core/language.h"
        QDirIterator walk(root, {u"*.h"_s, u"*.cpp"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            const auto file = folder.relativeFilePath(walk.next());
            m_files.insert(file, {});
            if (const auto mark = file.indexOf("/include/"_L1); mark >= 0)
                publicHeaders.insert(file.mid(mark + 9), file);
        }

        static const QRegularExpression includeLine(uR"(^\s*#\s*include\s*\x22([^\x22]+)\x22)"_s,
                                                    QRegularExpression::MultilineOption);
        for (auto entry = m_files.begin(); entry != m_files.end(); ++entry) {
            QFile file(folder.filePath(entry.key()));
            if (!file.open(QIODevice::ReadOnly))
                continue;
            const auto beside = QFileInfo(entry.key()).path();
            auto matches = includeLine.globalMatch(QString::fromUtf8(file.readAll()));
            while (matches.hasNext()) {
                const auto name = matches.next().captured(1);
                if (name.endsWith(".moc"_L1) || generated.contains(name))
                    continue;
                const auto local = QDir::cleanPath(beside + u'/' + name);
                if (publicHeaders.contains(name))
                    entry->append(publicHeaders[name]);
                else if (m_files.contains(local))
                    entry->append(local);
                else
                    m_dangling.append(entry.key() + " includes "_L1 + name);
            }
        }
    }

    // Each complaint is one line that names the places. Empty: all is well.
    QStringList forbiddenIncludes(const Rules &rules) const
    {
        QStringList complaints;
        for (const auto &[file, includes] : m_files.asKeyValueRange()) {
            const auto room = roomOf(file);
            if (!rules.contains(room))
                complaints.append(file + " lies in a room without a rule"_L1);
            for (const auto &include : includes) {
                const auto seen = roomOf(include);
                if (seen != room && !rules.value(room).contains(seen))
                    complaints.append(file + " includes "_L1 + include);
            }
        }
        return complaints;
    }
    // Includes in quotes that name no file of the tree.
    QStringList danglingIncludes() const { return m_dangling; }
    QStringList fileCycles() const { return CycleSearch(m_files).cycles(); }

    int fileCount() const { return int(m_files.size()); }
    int includeCount() const
    {
        int count = 0;
        for (const auto &includes : m_files)
            count += int(includes.size());
        return count;
    }

private:
    static QString roomOf(const QString &file)
    {
        const auto steps = file.split(u'/');
        if (steps.size() == 1)
            return file.section(u'.', 0, 0);
        const auto inner = steps.value(1);
        if (steps[0] == "platform"_L1 && steps.size() > 2 && inner != "include"_L1)
            return "platform_"_L1 + inner;
        return steps[0];
    }

    QMap<QString, QStringList> m_files; // what each file includes, relative to the root
    QStringList m_dangling;
};

// Who may see whom, which leads in no circle. The backends are seen by the entry alone.
const IncludeChecker::Rules rules{
    {u"platform"_s, {}},
    {u"platform_linux"_s, {u"platform"_s, u"platform_linux_keyring"_s}},
    {u"platform_linux_keyring"_s, {u"platform"_s}},
    {u"platform_linux_network"_s, {u"platform"_s}},
    {u"platform_linux_speech"_s, {u"platform"_s}},
    {u"platform_memory"_s, {u"platform"_s}},
    {u"core"_s, {u"platform"_s}},
    {u"stores"_s, {u"platform"_s, u"core"_s}},
    {u"account"_s, {u"platform"_s, u"core"_s, u"stores"_s}},
    {u"session"_s, {u"platform"_s, u"core"_s, u"stores"_s, u"desktop"_s}},
    {u"desktop"_s, {u"platform"_s}},
    {u"updates"_s, {u"platform"_s, u"core"_s}},
    {u"windows"_s,
     {u"platform"_s, u"core"_s, u"stores"_s, u"account"_s, u"session"_s, u"desktop"_s,
      u"updates"_s}},
    {u"app"_s,
     {u"platform"_s, u"core"_s, u"stores"_s, u"account"_s, u"session"_s, u"desktop"_s, u"updates"_s,
      u"windows"_s}},
    // Programs of their own.
    {u"ocr"_s, {u"core"_s}},
    {u"screencapture"_s, {u"app"_s, u"platform"_s, u"platform_linux"_s, u"windows"_s}},
    {u"main"_s, {u"platform"_s, u"platform_linux"_s, u"app"_s}},
};

using Tree = QList<std::pair<QString, QByteArray>>; // files and their contents

void write(const QTemporaryDir &folder, const Tree &tree)
{
    for (const auto &[name, contents] : tree) {
        const auto path = folder.filePath(name);
        QDir().mkpath(path.section(u'/', 0, -2));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }
}

} // namespace

class TestIncludes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checkerFinds_data()
    {
        QTest::addColumn<Tree>("tree");
        QTest::addColumn<QStringList>("forbidden");
        QTest::addColumn<QStringList>("dangling");
        QTest::addColumn<int>("fileCycles");

        const Tree sound{{u"core/include/core/a.h"_s, "#include <QString>\n"},
                         {u"core/a.cpp"_s, "#include \"core/a.h\"\n#include \"helper.h\"\n"},
                         {u"core/helper.h"_s, "// no #include \"app/x.h\"\n"},
                         {u"stores/b.cpp"_s, "  # include \"core/a.h\"\n#include \"b.moc\"\n"}};
        QTest::newRow("nothing in a sound tree") << sound << QStringList() << QStringList() << 0;
        QTest::newRow("an include against the direction")
            << sound + Tree{{u"stores/include/stores/b.h"_s, ""},
                            {u"core/c.cpp"_s, "#include \"stores/b.h\"\n"}}
            << QStringList{u"core/c.cpp includes stores/include/stores/b.h"_s} << QStringList()
            << 0;
        QTest::newRow("a backend seen by another room")
            << Tree{{u"platform/linux/include/platform_linux/x.h"_s, ""},
                    {u"platform/include/platform/y.h"_s, ""},
                    {u"platform/linux/x.cpp"_s, "#include \"platform/y.h\"\n"},
                    {u"main.cpp"_s, "#include \"platform_linux/x.h\"\n"},
                    {u"app/z.cpp"_s, "#include \"platform_linux/x.h\"\n"}}
            << QStringList{u"app/z.cpp includes platform/linux/include/platform_linux/x.h"_s}
            << QStringList() << 0;
        QTest::newRow("two headers that include each other")
            << Tree{{u"core/include/core/a.h"_s, "#include \"core/b.h\"\n"},
                    {u"core/include/core/b.h"_s, "#include \"core/a.h\"\n"}}
            << QStringList() << QStringList() << 1;
        QTest::newRow("a name without a file, a room without a rule")
            << Tree{{u"attic/a.cpp"_s, "#include \"b.h\"\n"}}
            << QStringList{u"attic/a.cpp lies in a room without a rule"_s}
            << QStringList{u"attic/a.cpp includes b.h"_s} << 0;
    }

    void checkerFinds()
    {
        QFETCH(const Tree, tree);
        QTemporaryDir folder;
        write(folder, tree);
        const IncludeChecker checker(folder.path());
        QTEST(checker.forbiddenIncludes(rules), "forbidden");
        QTEST(checker.danglingIncludes(), "dangling");
        QTEST(int(checker.fileCycles().size()), "fileCycles");
    }

    void sourcesKeepTheRules()
    {
        const IncludeChecker checker(QStringLiteral(NIVORA_SOURCES), {u"han_variants_table.h"_s});
        QVERIFY(checker.fileCount() > 0 && checker.includeCount() > 0);
        QCOMPARE(checker.forbiddenIncludes(rules).join(u'\n'), QString());
        QCOMPARE(checker.danglingIncludes().join(u'\n'), QString());
        QCOMPARE(checker.fileCycles().join(u'\n'), QString());
    }
};

QTEST_GUILESS_MAIN(TestIncludes)
#include "tst_includes.moc"
