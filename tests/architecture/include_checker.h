#pragma once

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

namespace nivora::test {

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
    explicit IncludeChecker(const QString &root, const QSet<QString> &generated = {});

    // Each complaint is one line that names the places. Empty: all is well.
    QStringList forbiddenIncludes(const Rules &rules) const;
    // Includes in quotes that name no file of the tree.
    QStringList danglingIncludes() const { return m_dangling; }
    QStringList roomCycles() const;
    QStringList fileCycles() const;

    int fileCount() const { return int(m_files.size()); }
    int includeCount() const;

private:
    static QString roomOf(const QString &file);

    QMap<QString, QStringList> m_files; // what each file includes, relative to the root
    QStringList m_dangling;
};

} // namespace nivora::test
