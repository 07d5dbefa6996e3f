#include "x11_idle_monitor.h"

#include <xcb/sync.h>

#include <string_view>

using namespace std::chrono_literals;

namespace nivora::linuxdesktop {

namespace {

// XCB_NONE where the server has none.
xcb_sync_counter_t idleCounter(X11Connection &connection)
{
    if (!connection.hasExtension(xcb_sync_id) ||
        !connection.reply<xcb_sync_initialize_reply>(
            xcb_sync_initialize(connection.xcb(), XCB_SYNC_MAJOR_VERSION, XCB_SYNC_MINOR_VERSION)))
        return XCB_NONE;
    const auto counters = connection.reply<xcb_sync_list_system_counters_reply>(
        xcb_sync_list_system_counters(connection.xcb()));
    if (!counters)
        return XCB_NONE;
    for (auto each = xcb_sync_list_system_counters_counters_iterator(counters.get()); each.rem > 0;
         xcb_sync_systemcounter_next(&each)) {
        // The library's own accessor skips the padding that its struct has in memory
        // and the name does not have on the wire.
        const auto *length = &each.data->name_len;
        if (std::string_view(reinterpret_cast<const char *>(length + 1), *length) == "IDLETIME")
            return each.data->counter;
    }
    return XCB_NONE;
}

class IdleWait final : public platform::Operation, private X11EventHandler
{
public:
    IdleWait(X11Connection &connection, xcb_sync_counter_t counter, std::chrono::milliseconds span,
             std::function<void()> done)
        : X11EventHandler(connection)
        , m_alarm(xcb_generate_id(connection.xcb()))
        , m_done(std::move(done))
    {
        xcb_sync_create_alarm_value_list_t values{};
        values.counter = counter;
        values.valueType = XCB_SYNC_VALUETYPE_ABSOLUTE;
        values.value = {int32_t(span.count() >> 32), uint32_t(span.count())};
        // Holds also where the counter stands beyond it already.
        values.testType = XCB_SYNC_TESTTYPE_POSITIVE_COMPARISON;
        values.events = 1;
        xcb_sync_create_alarm_aux(connection.xcb(), m_alarm,
                                  XCB_SYNC_CA_COUNTER | XCB_SYNC_CA_VALUE_TYPE | XCB_SYNC_CA_VALUE |
                                      XCB_SYNC_CA_TEST_TYPE | XCB_SYNC_CA_DELTA |
                                      XCB_SYNC_CA_EVENTS,
                                  &values);
        connection.flush();
    }

private:
    void handleEvent(const xcb_generic_event_t &event) override
    {
        const auto *extension = xcb_get_extension_data(connection().xcb(), &xcb_sync_id);
        if (extension && eventType(event) == extension->first_event + XCB_SYNC_ALARM_NOTIFY &&
            eventAs<xcb_sync_alarm_notify_event_t>(event).alarm == m_alarm)
            finish(m_done);
    }

    void stop() override
    {
        if (!connection().isValid())
            return;
        xcb_sync_destroy_alarm(connection().xcb(), m_alarm);
        connection().flush();
    }

    xcb_sync_alarm_t m_alarm;
    std::function<void()> m_done;
};

} // namespace

platform::Task X11IdleMonitor::whenIdle(std::chrono::milliseconds span, std::function<void()> done)
{
    const auto counter = idleCounter(m_connection);
    if (counter == XCB_NONE)
        return platform::delay(0ms, std::move(done));
    return platform::Task(new IdleWait(m_connection, counter, span, std::move(done)));
}

} // namespace nivora::linuxdesktop
