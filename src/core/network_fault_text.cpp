#include "core/network_fault_text.h"

#include "core/translation_error.h"

#include <QCoreApplication>

namespace nivora {

QString networkFaultText(const QNetworkReply &reply)
{
    constexpr auto context = "NetworkFault";
    switch (networkFault(reply.error())) {
    case NetworkFault::TimedOut:
        return QCoreApplication::translate(context, "请求超时");
    case NetworkFault::CannotConnectToHost:
    case NetworkFault::CannotFindHost:
        return QCoreApplication::translate(context, "无法连接服务器");
    case NetworkFault::NotConnectedToInternet:
        return QCoreApplication::translate(context, "没有网络连接");
    case NetworkFault::NetworkConnectionLost:
        return QCoreApplication::translate(context, "连接已中断");
    case NetworkFault::Other:
        break;
    }
    return reply.errorString();
}

} // namespace nivora
