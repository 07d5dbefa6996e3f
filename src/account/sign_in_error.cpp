#include "account/sign_in_error.h"

#include <QCoreApplication>

namespace nivora {

QString errorDescription(const SignInError &error)
{
    if (const auto *answer = std::get_if<AuthError>(&error))
        return answer->errorDescription();
    switch (std::get<AuthFlowError>(error)) {
    case AuthFlowError::Cancelled:
        return QCoreApplication::translate("AuthFlowError", "已取消登录。");
    case AuthFlowError::CannotStart:
        return QCoreApplication::translate("AuthFlowError", "无法打开登录页面。");
    case AuthFlowError::CannotStore:
        return QCoreApplication::translate("AuthFlowError", "无法保存登录状态：系统密钥环不可用。");
    }
    Q_UNREACHABLE();
}

} // namespace nivora
