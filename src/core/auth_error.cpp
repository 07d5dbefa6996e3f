#include "core/auth_error.h"

#include <QCoreApplication>

namespace nivora {

AuthError AuthError::http(int status, const QString &text)
{
    return {Kind::Http, status, text};
}

AuthError AuthError::network(const QString &text)
{
    return {Kind::Network, 0, text};
}

AuthError AuthError::invalidResponse()
{
    return {Kind::InvalidResponse, 0, {}};
}

QString AuthError::errorDescription() const
{
    switch (m_kind) {
    case Kind::Http:
        if (!m_text.isEmpty())
            return m_text;
        return QCoreApplication::translate("AuthError", "登录服务返回错误 (HTTP %1)。")
            .arg(m_status);
    case Kind::Network:
        return QCoreApplication::translate("AuthError", "网络错误：%1").arg(m_text);
    case Kind::InvalidResponse:
        return QCoreApplication::translate("AuthError", "登录服务响应异常，请重试。");
    }
    Q_UNREACHABLE();
}

} // namespace nivora
