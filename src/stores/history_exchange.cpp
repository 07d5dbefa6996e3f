#include "stores/history_exchange.h"

#include "core/csv.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPromise>
#include <QSaveFile>
#include <QThreadPool>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

struct Column
{
    QLatin1StringView name;
    QString (*value)(const HistoryEntry &entry);
};

constexpr Column columns[] = {
    {"id"_L1, [](const HistoryEntry &entry) { return entry.id.toString(QUuid::WithoutBraces); }},
    {"date"_L1, [](const HistoryEntry &entry) { return entry.date.toString(Qt::ISODateWithMs); }},
    {"from"_L1, [](const HistoryEntry &entry) { return entry.from; }},
    {"to"_L1, [](const HistoryEntry &entry) { return entry.to; }},
    {"source"_L1, [](const HistoryEntry &entry) { return entry.sourceText; }},
    {"translation"_L1, [](const HistoryEntry &entry) { return entry.translation; }},
};

QString save(const QByteArray &bytes, const QString &path)
{
    QSaveFile file(path);
    const bool saved = file.open(QIODevice::WriteOnly) &&
                       file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) &&
                       file.write(bytes) == bytes.size() && file.commit();
    return saved ? QString() : file.errorString();
}

} // namespace

QByteArray historyTo(HistoryFormat format, const std::vector<HistoryEntry> &entries)
{
    if (format == HistoryFormat::Csv) {
        QStringList fields;
        for (const Column &column : columns)
            fields.append(column.name);
        QByteArray csv = csvRecord(fields).toUtf8();
        for (const HistoryEntry &entry : entries) {
            fields.clear();
            for (const Column &column : columns)
                fields.append(column.value(entry));
            csv += csvRecord(fields).toUtf8();
        }
        return csv;
    }
    QJsonArray all;
    for (const HistoryEntry &entry : entries) {
        QJsonObject object;
        for (const Column &column : columns)
            object[column.name] = column.value(entry);
        all.append(object);
    }
    return QJsonDocument(all).toJson();
}

platform::Task exportHistory(std::vector<HistoryEntry> entries, HistoryFormat format,
                             const QString &path, std::function<void(QString)> done)
{
    auto promise = std::make_shared<QPromise<QString>>();
    platform::Task task = platform::whenFinished<QString>(promise->future(), std::move(done));
    promise->start();
    QThreadPool::globalInstance()->start([promise, entries = std::move(entries), format, path] {
        promise->addResult(save(historyTo(format, entries), path));
        promise->finish();
    });
    return task;
}

} // namespace nivora
