#pragma once

#include "localcloud/answer.h"

#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QUrl>

namespace nivora::localcloud {

// Another OpenAI-compatible server that does the translating.
class Upstream
{
public:
    // `base` may end in /v1 or not. An empty key sends none.
    Upstream(const QUrl &base, const QString &model, const QByteArray &key);

    const QString &model() const { return m_model; }

    // Sends a chat completion there, for its own model, and passes the answer on
    // as it arrives, with `headers` added. 502 when the server does not answer;
    // an answer that breaks off there breaks off here.
    Answer forward(QJsonObject body, const Headers &headers);

private:
    QNetworkAccessManager m_network;
    QUrl m_url;
    QString m_model;
    QByteArray m_key;
};

} // namespace nivora::localcloud
