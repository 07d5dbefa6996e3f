#include "screen_grab.h"

#include "support/x11_peer.h"

#include <cstring>

namespace nivora::test {

QImage grabScreen(const X11Peer &peer, const QRect &rectangle)
{
    const auto reply = X11Peer::hold(xcb_get_image_reply(
        peer.xcb(),
        xcb_get_image(peer.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, peer.root(), int16_t(rectangle.x()),
                      int16_t(rectangle.y()), uint16_t(rectangle.width()),
                      uint16_t(rectangle.height()), ~0U),
        nullptr));
    QImage image(rectangle.size(), QImage::Format_RGB32);
    if (!reply || xcb_get_image_data_length(reply.get()) != image.sizeInBytes())
        return {};
    std::memcpy(image.bits(), xcb_get_image_data(reply.get()), size_t(image.sizeInBytes()));
    return image;
}

} // namespace nivora::test
