#pragma once

#include <QLoggingCategory>

// The program's four log categories. Debug lines are off unless the user turns
// them on, for instance with QT_LOGGING_RULES="app.nivora.*.debug=true".
// No line ever holds text that was selected, typed or translated, nor any part
// of a secret: lengths and language names only.
namespace nivora::log {

Q_DECLARE_LOGGING_CATEGORY(app)
Q_DECLARE_LOGGING_CATEGORY(hotkey)
Q_DECLARE_LOGGING_CATEGORY(selection)
Q_DECLARE_LOGGING_CATEGORY(translate)

} // namespace nivora::log
