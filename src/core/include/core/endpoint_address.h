#pragma once

#include <QString>

namespace nivora {

// What keeps an address from being the base of an OpenAI-compatible endpoint.
enum class AddressProblem {
    None,
    NoScheme,      // or one that no request is made with
    NoHost,        // or nothing that could be read as one
    EndsInVersion, // requests bring the "v1" along
};

AddressProblem addressProblem(const QString &address);

} // namespace nivora
