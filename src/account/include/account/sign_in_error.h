#pragma once

#include "core/auth_error.h"

#include <QString>

#include <variant>

namespace nivora {

// Why a sign-in failed that the server had no part in.
enum class AuthFlowError {
    Cancelled,   // the user gave up, or began anew
    CannotStart, // no browser can be opened
    CannotStore, // the keychain did not take the token
};

using SignInError = std::variant<AuthError, AuthFlowError>;

// The message for the user; plain text.
QString errorDescription(const SignInError &error);

} // namespace nivora
