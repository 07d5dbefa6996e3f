#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace nivora::test {

struct XcbDisconnect
{
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};
using XcbConnection = std::unique_ptr<xcb_connection_t, XcbDisconnect>;

struct FreeReply
{
    void operator()(void *reply) const { std::free(reply); }
};
// Replies, events and errors of xcb come from malloc.
template<typename Reply>
using XcbReply = std::unique_ptr<Reply, FreeReply>;

template<typename Reply>
XcbReply<Reply> holdReply(Reply *reply)
{
    return XcbReply<Reply>(reply);
}

} // namespace nivora::test
