#pragma once

#include "history_file.h"

#include "core/language.h"

#include <QString>
#include <QUuid>

#include <functional>
#include <memory>
#include <optional>

namespace nivora {

class HistoryConnection;

// The history's table. Used by one thread at a time, which may be another one each time.
// A file that is gone, or turns out to be damaged, gives way to a new one. Another process
// that holds the database makes a call wait a second at most.
class HistoryDatabase
{
public:
    explicit HistoryDatabase(QString path);
    ~HistoryDatabase();

    // Opens it where that has not happened yet. False when there is none to be had.
    bool begin();
    void close();

    // Texts are trimmed and neither empty nor with a NUL.
    struct Row
    {
        QString source;
        QString translation;
        Language from;
        Language to;
        double time; // seconds since the epoch
    };
    // Unless the newest row for source and target says the same.
    void add(const Row &row);
    std::optional<QString> latestTranslation(const QString &source, Language target);
    void remove(const QUuid &id);
    void clear();

    // The file that is open, or was last.
    const std::optional<HistoryFile::Identity> &seen() const { return m_file.seen(); }
    // Keeps aside a file that a reader has found damaged, unless it is another one by now.
    void giveUp(const std::optional<HistoryFile::Identity> &damaged);

private:
    void open();
    int prepareSchema();
    bool keepAside();
    void perform(const std::function<int()> &operation);
    void report(const QString &message);
    int newest(const QString &source, Language target, std::optional<QString> &translation);
    int insert(const Row &row);

    const QString m_path;
    HistoryFile m_file;
    std::unique_ptr<HistoryConnection> m_connection; // absent when there is none to be had
    bool m_isOpened = false;                         // or that was tried in vain
    bool m_hasSchema = false;
    QString m_lastReport;
};

} // namespace nivora
