#pragma once

#include <QString>

class QNetworkReply;

namespace nivora {

// Why the network gave no answer, for users; in Qt's own words only where others
// cannot be found.
QString networkFaultText(const QNetworkReply &reply);

} // namespace nivora
