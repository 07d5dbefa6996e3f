#pragma once

namespace nivora {

// Lets assistive tools read every FlowingText. Once a program; more does no harm.
void makeFlowingTextsAccessible();

} // namespace nivora
