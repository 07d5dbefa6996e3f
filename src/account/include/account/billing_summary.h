#pragma once

#include <QString>

class QLocale;

namespace nivora {

struct BillingStatus;

// "Pro", or the name of the free plan.
QString planLabel(const BillingStatus &status);

// How much of the quota is used, from 0 to 100; 0 where there is no quota.
int usedPercent(const BillingStatus &status);

// One line: "Pro · 1,200/10,000 (12%)".
QString billingSummary(const BillingStatus &status, const QLocale &locale);

} // namespace nivora
