#pragma once

#include "updates/appcast_entry.h"
#include "updates/update_server.h"

#include "platform/task.h"

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUuid>

#include <functional>
#include <optional>

namespace nivora {

// What the version history shows: the releases of the feed, and which of them is
// chosen.
class VersionHistory : public QObject
{
    Q_OBJECT

public:
    // `userLanguages`: BCP 47, the most wanted first; asked at each load. The
    // server outlives this object.
    VersionHistory(UpdateServer &server, std::function<QStringList()> userLanguages);

    const QList<AppcastEntry> &entries() const { return m_entries; }
    std::optional<QUuid> selectedID() const { return m_selectedID; }
    // The entry with that id; null without one.
    const AppcastEntry *selected() const;
    // Why the feed could not be fetched, in the last load that failed.
    const std::optional<QString> &error() const { return m_error; }
    bool loading() const { return m_loading; }

    // Fetches the feed anew, replaces the entries and chooses the first.
    void load();
    void select(std::optional<QUuid> id);

Q_SIGNALS:
    void entriesChanged(); // the selection too
    void selectionChanged();
    void stateChanged(); // error or loading

private:
    void take(const UpdateServer::Result &result);

    UpdateServer &m_server;
    std::function<QStringList()> m_userLanguages;
    platform::Task m_request;
    QList<AppcastEntry> m_entries;
    std::optional<QUuid> m_selectedID;
    std::optional<QString> m_error;
    bool m_loading = true;
};

} // namespace nivora
