#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>

#include <xcb/res.h>

#include <cstdlib>
#include <memory>

namespace nivora::bench {

inline QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The number behind this name in one of the system's tables.
inline qint64 valueOf(const QByteArray &lines, const QByteArray &name)
{
    for (const QByteArray &line : lines.split('\n')) {
        if (line.startsWith(name))
            return line.sliced(name.size()).simplified().split(' ').first().toLongLong();
    }
    return 0;
}

// What the server keeps for the clients of one process.
inline qint64 serverResources(xcb_connection_t *c, qint64 process)
{
    const auto hold = [](auto *reply) {
        return std::unique_ptr<std::remove_pointer_t<decltype(reply)>, decltype(&std::free)>(
            reply, &std::free);
    };
    // Clients are known by their processes since version 1.2.
    hold(xcb_res_query_version_reply(c, xcb_res_query_version(c, 1, 2), nullptr));
    const auto clients = hold(xcb_res_query_clients_reply(c, xcb_res_query_clients(c), nullptr));
    qint64 count = 0;
    for (int i = 0; clients && i < xcb_res_query_clients_clients_length(clients.get()); ++i) {
        const uint32_t base = xcb_res_query_clients_clients(clients.get())[i].resource_base;
        const xcb_res_client_id_spec_t spec{base, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
        const auto ids =
            hold(xcb_res_query_client_ids_reply(c, xcb_res_query_client_ids(c, 1, &spec), nullptr));
        if (!ids || ids->num_ids == 0)
            continue;
        const auto first = xcb_res_query_client_ids_ids_iterator(ids.get());
        if (xcb_res_client_id_value_value_length(first.data) == 0 ||
            *xcb_res_client_id_value_value(first.data) != uint32_t(process))
            continue;
        const auto kinds = hold(xcb_res_query_client_resources_reply(
            c, xcb_res_query_client_resources(c, base), nullptr));
        for (int k = 0; kinds && k < xcb_res_query_client_resources_types_length(kinds.get()); ++k)
            count += xcb_res_query_client_resources_types(kinds.get())[k].count;
    }
    return count;
}

// What a process holds at one moment.
struct ProcessState
{
    qint64 privateKiB = 0;
    qint64 descriptors = 0;
    qint64 threads = 0;
    qint64 serverResources = 0;

    static ProcessState of(qint64 process, xcb_connection_t *server)
    {
        const QString folder = QStringLiteral("/proc/%1/").arg(process);
        const auto all = QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot;
        return {valueOf(contents(folder + QStringLiteral("smaps_rollup")), "Private_Dirty:"),
                QDir(folder + QStringLiteral("fd")).entryList(all).size(),
                valueOf(contents(folder + QStringLiteral("status")), "Threads:"),
                bench::serverResources(server, process)};
    }

    QString text() const
    {
        return QStringLiteral("%1 KiB private, %2 descriptors, %3 threads, %4 resources of the X "
                              "server")
            .arg(privateKiB)
            .arg(descriptors)
            .arg(threads)
            .arg(serverResources);
    }
};

} // namespace nivora::bench
