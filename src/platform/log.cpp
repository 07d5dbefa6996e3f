#include "platform/log.h"

namespace nivora::log {

Q_LOGGING_CATEGORY(app, "app.nivora.app", QtInfoMsg)
Q_LOGGING_CATEGORY(hotkey, "app.nivora.hotkey", QtInfoMsg)
Q_LOGGING_CATEGORY(selection, "app.nivora.selection", QtInfoMsg)
Q_LOGGING_CATEGORY(translate, "app.nivora.translate", QtInfoMsg)

} // namespace nivora::log
