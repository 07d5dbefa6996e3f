#pragma once

#include "platform/http_client.h"

#include <QString>

namespace nivora {

// Why the network gave no answer, for users; in the library's own words only where
// others cannot be found.
QString networkFaultText(const platform::HttpFailure &failure);

} // namespace nivora
