#include "motion.h"

#include <QStyle>
#include <QWidget>

#include <cmath>
#include <numbers>

namespace nivora {

bool wantsMotion(const QWidget &widget)
{
    return widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget) > 0;
}

double springProgress(double seconds, double response, double damping)
{
    const double natural = 2 * std::numbers::pi / response;
    const double decay = damping * natural;
    const double swing = natural * std::sqrt(1 - damping * damping);
    return 1 - std::exp(-decay * seconds) *
                   (std::cos(swing * seconds) + decay / swing * std::sin(swing * seconds));
}

} // namespace nivora
