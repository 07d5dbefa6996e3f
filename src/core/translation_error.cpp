#include "core/translation_error.h"

#include <QCoreApplication>

namespace nivora {

TranslationError TranslationError::http(int status)
{
    return {Kind::Http, status, {}};
}

TranslationError TranslationError::network(const QString &text)
{
    return {Kind::Network, 0, text};
}

TranslationError TranslationError::emptyResponse()
{
    return {Kind::EmptyResponse, 0, {}};
}

TranslationError TranslationError::timeout()
{
    return {Kind::Timeout, 0, {}};
}

TranslationError TranslationError::cannotConnect()
{
    return {Kind::CannotConnect, 0, {}};
}

TranslationError TranslationError::from(NetworkFault fault, const QString &description)
{
    switch (fault) {
    case NetworkFault::TimedOut:
        return timeout();
    case NetworkFault::CannotConnectToHost:
    case NetworkFault::NotConnectedToInternet:
    case NetworkFault::NetworkConnectionLost:
    case NetworkFault::CannotFindHost:
        return cannotConnect();
    case NetworkFault::RedirectRefused:
    case NetworkFault::Other:
        break;
    }
    return network(description);
}

bool TranslationError::isTransient(NetworkFault fault)
{
    switch (fault) {
    case NetworkFault::TimedOut:
    case NetworkFault::CannotConnectToHost:
    case NetworkFault::NotConnectedToInternet:
    case NetworkFault::NetworkConnectionLost:
        return true;
    // A wrong host name stays wrong.
    case NetworkFault::CannotFindHost:
    case NetworkFault::RedirectRefused:
    case NetworkFault::Other:
        break;
    }
    return false;
}

QString TranslationError::errorDescription() const
{
    switch (m_kind) {
    case Kind::Http:
        return QCoreApplication::translate("TranslationError", "服务返回错误 (HTTP %1)。",
                                           "error: http status")
            .arg(m_status);
    case Kind::Network:
        return QCoreApplication::translate("TranslationError", "网络错误：%1", "error: network")
            .arg(m_text);
    case Kind::EmptyResponse:
        return QCoreApplication::translate("TranslationError", "未收到译文，请重试。",
                                           "error: empty response");
    case Kind::Timeout:
        return QCoreApplication::translate(
            "TranslationError", "请求超时（模型可能正在加载，请重试）。", "error: timeout");
    case Kind::CannotConnect:
        return QCoreApplication::translate("TranslationError",
                                           "无法连接翻译服务，请检查网络或服务地址。",
                                           "error: cannot connect");
    }
    Q_UNREACHABLE();
}

} // namespace nivora
