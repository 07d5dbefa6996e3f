#pragma once

#include "platform/task.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace nivora {

namespace platform {
class ScreenCapture;
class TextRecognizer;
} // namespace platform

// Turns a region of the screen into text, in two steps. Without state: several
// captures at once do not meet.
class OCRService
{
public:
    // Borrows both.
    OCRService(platform::ScreenCapture &screenCapture, platform::TextRecognizer &recognizer)
        : m_screenCapture(screenCapture)
        , m_recognizer(recognizer)
    {
    }

    // Whether the screen may be looked at.
    platform::Task queryAccess(std::function<void(bool)> done);

    // Runs the desktop's tool with these arguments and the path of a temporary
    // file, which is gone before the answer. The answer is the file's contents, a
    // picture that may still turn out to be broken; absent when the user cancelled
    // or anything failed. Dropping the task ends the tool.
    platform::Task capture(const QStringList &args,
                           std::function<void(std::optional<QByteArray>)> done);

    // Held while a picture is on its way, makes recognize() answer sooner.
    platform::Task prepare();

    // The text in the picture, line by line, without blanks around it. Absent when
    // there is none, or the picture cannot be read.
    platform::Task recognize(const QByteArray &image,
                             std::function<void(std::optional<QString>)> done);

private:
    platform::ScreenCapture &m_screenCapture;
    platform::TextRecognizer &m_recognizer;
};

} // namespace nivora
