#pragma once

#include "platform/window_system.h"

#include <QByteArray>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <optional>

namespace nivora::platform {

// Describes the element that had the focus, for reports on a translation. Holds
// names of programs and attributes, never text of the user's.
struct FocusDiag
{
    QString app; // "?" if unknown
    QString role;
    QString subrole;
    QString editable; // "true", "false" or "nil"
    bool manualAX = false;
    QStringList attrs;
    QString scene; // "read" when text was captured, "write" when not

    // A JSON object of exactly these seven keys in this order.
    QByteArray toJson() const;
    // Absent unless all seven are there with the right types.
    static std::optional<FocusDiag> fromJson(const QByteArray &json);

    bool operator==(const FocusDiag &) const = default;
};

// What the user had selected when a trigger fired.
struct Selection
{
    QString text; // exactly as read; empty when nothing was captured
    // Where it is: device pixels, origin at the top-left of the primary screen,
    // y growing downward. Absent when unknown.
    std::optional<QRectF> screenRect;
    // Whether the focused element takes text; absent when nothing is known.
    std::optional<bool> focusedEditable;
    std::optional<FocusDiag> diag; // absent when there was no focused element
    // The window that the user was in, the only one that a result may be pasted
    // into. Absent when there was none, or it was one of our own.
    std::optional<ForeignWindow> window;
    bool overOwnWindow = false;
};

} // namespace nivora::platform
