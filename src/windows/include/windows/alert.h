#pragma once

#include "platform/task.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace nivora {

struct AlertContents
{
    QString message;
    QString details;
    // From the first, which Return chooses, to the last, which also stands for
    // closing the window. At least one.
    QStringList buttons;
};

// Asks the user something in a small window of its own, which comes to the
// front. `chosen` gets the index of the button. The window goes with the handle.
platform::Task showAlert(const AlertContents &contents, std::function<void(int)> chosen);

} // namespace nivora
