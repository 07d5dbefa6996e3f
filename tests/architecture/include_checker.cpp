#include "include_checker.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>

namespace nivora::test {

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

} // namespace

IncludeChecker::IncludeChecker(const QString &root, const QSet<QString> &generated)
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

    static const QRegularExpression includeLine(uR"re(^\s*#\s*include\s*"([^"]+)")re"_s,
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

QStringList IncludeChecker::forbiddenIncludes(const Rules &rules) const
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

QStringList IncludeChecker::roomCycles() const
{
    Graph rooms;
    for (const auto &[file, includes] : m_files.asKeyValueRange()) {
        auto &seen = rooms[roomOf(file)];
        for (const auto &include : includes) {
            if (const auto room = roomOf(include); room != roomOf(file) && !seen.contains(room))
                seen.append(room);
        }
    }
    return CycleSearch(rooms).cycles();
}

QStringList IncludeChecker::fileCycles() const
{
    return CycleSearch(m_files).cycles();
}

int IncludeChecker::includeCount() const
{
    int count = 0;
    for (const auto &includes : m_files)
        count += int(includes.size());
    return count;
}

QString IncludeChecker::roomOf(const QString &file)
{
    const auto steps = file.split(u'/');
    if (steps.size() == 1)
        return file.section(u'.', 0, 0);
    const auto inner = steps.value(1);
    if (steps[0] == "platform"_L1 && steps.size() > 2 && inner != "include"_L1)
        return "platform_"_L1 + inner;
    return steps[0];
}

} // namespace nivora::test
