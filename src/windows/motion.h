#pragma once

#include <chrono>

class QWidget;

namespace nivora {

// Whether things may move: not for users who want no motion.
bool wantsMotion(const QWidget &widget);

// What a change from one step to the next takes, where things may move.
inline constexpr std::chrono::milliseconds stepSpan{200};

// How far a spring has brought something on its way from 0 to 1, beyond which it
// may shoot at first. `response`: the time of one swing without damping, in
// seconds; `damping`: as a fraction of what lets it come to rest without a swing,
// below 1. Source: the under-damped harmonic oscillator, starting at rest.
double springProgress(double seconds, double response, double damping);

} // namespace nivora
