#include "account/billing_summary.h"

#include "core/billing_service.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

QString planLabel(const BillingStatus &status)
{
    return status.isPro() ? u"Pro"_s
                          : QCoreApplication::translate("BillingStatus", "免费档", "free plan");
}

int usedPercent(const BillingStatus &status)
{
    if (status.quota < 1)
        return 0;
    const double share = double(status.used) / double(status.quota);
    return int(std::lround(std::clamp(share, 0.0, 1.0) * 100));
}

QString billingSummary(const BillingStatus &status, const QLocale &locale)
{
    return u"%1 · %2/%3 (%4%)"_s.arg(planLabel(status), locale.toString(status.used),
                                     locale.toString(status.quota),
                                     QString::number(usedPercent(status)));
}

} // namespace nivora
