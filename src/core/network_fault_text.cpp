#include "core/network_fault_text.h"

#include "core/translation_error.h"

#include <QCoreApplication>

namespace nivora {

QString networkFaultText(const QNetworkReply &reply)
{
    switch (networkFault(reply.error())) {
    case NetworkFault::TimedOut:
        return QCoreApplication::translate("NetworkFault", "请求超时");
    case NetworkFault::CannotConnectToHost:
    case NetworkFault::CannotFindHost:
        return QCoreApplication::translate("NetworkFault", "无法连接服务器");
    case NetworkFault::NotConnectedToInternet:
        return QCoreApplication::translate("NetworkFault", "没有网络连接");
    case NetworkFault::NetworkConnectionLost:
        return QCoreApplication::translate("NetworkFault", "连接已中断");
    case NetworkFault::Other:
        break;
    }
    return reply.errorString();
}

} // namespace nivora
