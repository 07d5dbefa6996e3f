#pragma once

#include "platform/task.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace nivora::platform {

// Everything that a clipboard owner offered, byte for byte.
struct ClipboardContents
{
    struct Item
    {
        QByteArray format; // the owner's name of it, "text/html" or "UTF8_STRING"
        QByteArray type;   // the type that the owner gave the bytes, often the same
        int unit = 8;      // bits per element: 8, 16 or 32
        QByteArray data;

        bool operator==(const Item &) const = default;
    };
    std::vector<Item> items;

    bool operator==(const ClipboardContents &) const = default;
};

// The desktop's clipboard. Main thread only; nothing here blocks: other programs
// are talked to elsewhere, and one that does not answer costs its deadline and
// nothing else.
class Clipboard
{
public:
    enum class Privacy {
        Ordinary,
        Concealed, // clipboard managers are asked not to keep it
    };

    virtual ~Clipboard() = default;

    // Rises whenever a program, this one included, puts something on the
    // clipboard or empties it.
    virtual quint64 changeCount() const = 0;

    // All that is on the clipboard now; no items when it is empty. Absent when
    // the owner did not hand over all of it within `deadline`.
    virtual Task read(std::chrono::milliseconds deadline,
                      std::function<void(std::optional<ClipboardContents>)> done) = 0;

    // The clipboard as plain text; absent when it holds none or the owner did
    // not answer within `deadline`.
    virtual Task readText(std::chrono::milliseconds deadline,
                          std::function<void(std::optional<QString>)> done) = 0;

    virtual void setText(const QString &text, Privacy privacy = Privacy::Ordinary) = 0;

    // Contents without items empty the clipboard.
    virtual void setContents(const ClipboardContents &contents) = 0;

    // How often data that this program put there has been fetched since the last
    // setText() or setContents(): by this process or by one that cannot be told,
    // by any other program for 0. Clipboard managers fetch whatever they see.
    virtual int fetchCount(qint64 processId = 0) const = 0;
};

} // namespace nivora::platform
