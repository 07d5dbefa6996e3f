#pragma once

#include "platform/task.h"

#include <QRectF>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace nivora::platform {

// What the desktop's accessibility service tells of the element that has the
// keyboard focus, read in one go. Role and attribute names are those that
// SelectionService tests; the backend maps its own vocabulary onto them.
//
// Rectangles are in the accessibility space: device pixels, origin at the
// top-left of the primary screen, y growing downward.
struct FocusedElement
{
    struct TextRange
    {
        int location = 0; // in characters
        int length = 0;   // 0 for a bare insertion point
    };

    qint64 processId = 0;
    QString applicationId;   // stable name of the program, empty if unknown
    QString applicationName; // as shown to people, empty if unknown
    QString role;            // "AXTextField", "AXTextArea", ... empty if none
    QString subrole;         // "AXSecureTextField", ... empty if none
    QStringList attributes;  // names of all attributes that the element has

    bool valueSettable = false;
    bool selectedTextSettable = false;

    std::optional<TextRange> selectedTextRange;
    std::optional<int> characterCount;
    std::optional<int> insertionPointLine;
    std::optional<QString> selectedText; // empty when nothing is selected
    std::optional<QRectF> selectedTextBounds;
    std::optional<QRectF> frame;
};

class Accessibility
{
public:
    virtual ~Accessibility() = default;

    // Whether this program may read other programs' elements: the service
    // answers and is switched on. Returns within 300 ms.
    virtual bool isTrusted() const = 0;

    // Asks for that: switches the service on for the session. The answer shows
    // in isTrusted() some time later.
    virtual void requestTrust() = 0;

    // The focused element of the active application, or of the application that
    // was active before, when one of our own windows has the focus. Absent when
    // there is none, or the application does not answer within 300 ms.
    virtual Task readFocusedElement(std::function<void(std::optional<FocusedElement>)> done) = 0;

    // Asks the application with this process id to expose its elements, where
    // it does so only on request. True if it was asked and may answer better
    // from now on.
    virtual bool requestExposure(qint64 processId) = 0;
};

} // namespace nivora::platform
