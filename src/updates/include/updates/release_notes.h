#pragma once

#include "updates/notes_html.h"
#include "updates/update_server.h"

#include <QImage>

#include <functional>
#include <variant>

namespace nivora {

// The pages of notes and the pictures in them, from the update server alone.
class ReleaseNotes
{
public:
    struct Page
    {
        QUrl url;
        Notes notes;
    };
    // Or why there is none, for the user.
    using Result = std::variant<Page, QString>;

    // A picture takes at most so many bytes, and decoded so many pixels.
    static constexpr qint64 maximumPicture = 4 * 1024 * 1024;
    static constexpr qint64 maximumPixels = 8'000'000;

    explicit ReleaseNotes(UpdateServer &server)
        : m_server(server)
    {
    }

    platform::Task page(const QUrl &url, std::function<void(Result)> done);

    // A null image when there is none that can be shown. PNG, JPEG, GIF and WebP:
    // an SVG may name files of this machine.
    platform::Task picture(const QUrl &url, std::function<void(QImage)> done);

private:
    UpdateServer &m_server;
};

} // namespace nivora
