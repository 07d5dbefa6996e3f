#include "core/network_fault_text.h"

#include <QCoreApplication>

namespace nivora {

QString networkFaultText(const platform::HttpFailure &failure)
{
    using platform::NetworkFault;
    switch (failure.fault) {
    case NetworkFault::TimedOut:
        return QCoreApplication::translate("NetworkFault", "请求超时");
    case NetworkFault::CannotConnectToHost:
    case NetworkFault::CannotFindHost:
        return QCoreApplication::translate("NetworkFault", "无法连接服务器");
    case NetworkFault::NotConnectedToInternet:
        return QCoreApplication::translate("NetworkFault", "没有网络连接");
    case NetworkFault::NetworkConnectionLost:
        return QCoreApplication::translate("NetworkFault", "连接已中断");
    case NetworkFault::RedirectRefused:
    case NetworkFault::Other:
        break;
    }
    return failure.description;
}

} // namespace nivora
