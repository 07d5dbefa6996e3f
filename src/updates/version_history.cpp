#include "updates/version_history.h"

#include "updates/appcast_parser.h"

#include <algorithm>

namespace nivora {

VersionHistory::VersionHistory(UpdateServer &server, std::function<QStringList()> userLanguages)
    : m_server(server)
    , m_userLanguages(std::move(userLanguages))
{
}

const AppcastEntry *VersionHistory::selected() const
{
    const auto found = std::ranges::find_if(
        m_entries, [this](const AppcastEntry &each) { return each.id == m_selectedID; });
    return found == m_entries.end() ? nullptr : &*found;
}

void VersionHistory::load()
{
    m_loading = true;
    Q_EMIT stateChanged();
    m_request = m_server.feed([this](const UpdateServer::Result &result) { take(result); });
}

void VersionHistory::take(const UpdateServer::Result &result)
{
    m_loading = false;
    if (const auto *problem = std::get_if<QString>(&result)) {
        m_error = *problem;
        return Q_EMIT stateChanged();
    }
    AppcastParser parser(m_userLanguages());
    parser.parse(std::get<UpdateServer::Document>(result).bytes);
    m_entries = parser.entries();
    m_selectedID = m_entries.isEmpty() ? std::nullopt : std::optional(m_entries.first().id);
    Q_EMIT entriesChanged();
    Q_EMIT stateChanged();
}

void VersionHistory::select(std::optional<QUuid> id)
{
    if (m_selectedID == id)
        return;
    m_selectedID = id;
    Q_EMIT selectionChanged();
}

} // namespace nivora
