#include "screen_grab.h"

#include "xcb_handle.h"

#include <cstring>

namespace nivora::test {

QImage grabScreen(xcb_connection_t *connection, xcb_window_t root, const QRect &rectangle)
{
    const auto reply = holdReply(xcb_get_image_reply(
        connection,
        xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root, int16_t(rectangle.x()),
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
