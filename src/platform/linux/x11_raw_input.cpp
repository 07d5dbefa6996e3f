#include "x11_raw_input.h"

#include <xcb/xinput.h>

namespace nivora::linuxdesktop {

bool hasRawInput(X11Connection &connection)
{
    if (!connection.hasExtension(xcb_input_id))
        return false;
    // Since 2.2 raw events arrive whoever has grabbed the keyboard, other clients
    // or the server's own menus; a client of 2.0 would see nothing then.
    const auto version = connection.reply<xcb_input_xi_query_version_reply>(
        xcb_input_xi_query_version(connection.xcb(), 2, 2));
    return version && (version->major_version > 2 ||
                       (version->major_version == 2 && version->minor_version >= 2));
}

void watchRawInput(X11Connection &connection, uint32_t mask)
{
    // The masters alone: all devices together deliver each event twice.
    struct
    {
        xcb_input_event_mask_t head;
        uint32_t mask;
    } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, mask};
    xcb_input_xi_select_events(connection.xcb(), connection.root(), 1, &selection.head);
    connection.flush();
}

bool watchUserInput(X11Connection &connection)
{
    if (!hasRawInput(connection))
        return false;
    watchRawInput(connection, XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS |
                                  XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE |
                                  XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS);
    return true;
}

std::optional<X11RawInput> rawInput(X11Connection &connection, const xcb_generic_event_t &event)
{
    if (eventType(event) != XCB_GE_GENERIC)
        return std::nullopt;
    const auto &generic = eventAs<xcb_ge_generic_event_t>(event);
    const auto *extension = xcb_get_extension_data(connection.xcb(), &xcb_input_id);
    if (!extension || generic.extension != extension->major_opcode)
        return std::nullopt;
    X11RawInput::Kind kind;
    switch (generic.event_type) {
    case XCB_INPUT_RAW_KEY_PRESS:
        kind = X11RawInput::Kind::KeyPress;
        break;
    case XCB_INPUT_RAW_KEY_RELEASE:
        kind = X11RawInput::Kind::KeyRelease;
        break;
    case XCB_INPUT_RAW_BUTTON_PRESS:
        kind = X11RawInput::Kind::ButtonPress;
        break;
    default:
        return std::nullopt;
    }
    // Key and button events have one layout.
    const auto &raw = eventAs<xcb_input_raw_button_press_event_t>(event);
    return X11RawInput{kind, raw.detail, raw.time, raw.full_sequence};
}

} // namespace nivora::linuxdesktop
