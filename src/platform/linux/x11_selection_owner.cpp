#include "x11_selection_owner.h"

namespace nivora::linuxdesktop {

namespace {

// Clipboard managers ask for this before they decide what to do with the text;
// that is no use of the text.
constexpr QByteArrayView privacyHint("x-kde-passwordManagerHint");
constexpr QByteArrayView privacyValue("secret");

} // namespace

X11SelectionOwner::X11SelectionOwner(X11Connection &connection, xcb_atom_t selection)
    : X11EventHandler(connection)
    , m_selection(selection)
    , m_window(connection.createHiddenWindow(0))
{
}

const platform::ClipboardContents *X11SelectionOwner::contents() const
{
    return m_offer ? &m_offer->contents : nullptr;
}

std::vector<xcb_atom_t> X11SelectionOwner::targetsToKeep() const
{
    std::vector<xcb_atom_t> targets;
    for (const Form &form : m_forms) {
        if (!form.counts && form.bytes == privacyValue)
            return {};
        targets.push_back(form.target);
    }
    return targets;
}

void X11SelectionOwner::offer(X11Offer offer)
{
    m_offer.reset();
    m_forms.clear();
    m_since = connection().serverTime();
    const bool empty = offer.contents.items.empty();
    xcb_connection_t *c = connection().xcb();
    m_lastSet =
        xcb_set_selection_owner(c, empty ? XCB_NONE : m_window, m_selection, m_since).sequence;
    m_unannounced.push_back(m_lastSet);
    const auto now =
        connection().reply<xcb_get_selection_owner_reply>(xcb_get_selection_owner(c, m_selection));
    if (empty || !now || now->owner != m_window)
        return;
    m_offer = std::move(offer);
    prepare();
}

bool X11SelectionOwner::isOwnChange(xcb_window_t owner, uint32_t sequence)
{
    while (!m_unannounced.empty() && isLater(sequence, m_unannounced.front()))
        m_unannounced.pop_front();
    // Between two requests of ours another program's change can carry the same
    // number, but not with our window or none.
    const bool ours = !m_unannounced.empty() && m_unannounced.front() == sequence &&
                      (owner == m_window || owner == XCB_NONE);
    if (ours)
        m_unannounced.pop_front();
    return ours;
}

void X11SelectionOwner::prepare()
{
    QByteArrayList names;
    for (const auto &item : m_offer->contents.items)
        names << item.format << item.type;
    const auto atoms = connection().intern(names);
    for (std::size_t i = 0; i < m_offer->contents.items.size(); ++i) {
        const auto &item = m_offer->contents.items[i];
        const int unit = item.unit == 16 || item.unit == 32 ? item.unit : 8;
        m_forms.push_back(
            {atoms[2 * i], atoms[2 * i + 1], unit, item.data, item.format != privacyHint});
    }
}

void X11SelectionOwner::handleEvent(const xcb_generic_event_t &event)
{
    if (eventType(event) == XCB_SELECTION_REQUEST) {
        const auto &request = eventAs<xcb_selection_request_event_t>(event);
        if (request.owner == m_window && request.selection == m_selection)
            serve(request);
    } else if (eventType(event) == XCB_SELECTION_CLEAR) {
        const auto &clear = eventAs<xcb_selection_clear_event_t>(event);
        // One from before we took the selection again tells of an earlier loss.
        if (clear.owner == m_window && clear.selection == m_selection &&
            !isLater(m_lastSet, event.full_sequence)) {
            m_offer.reset();
            m_forms.clear();
        }
    }
}

void X11SelectionOwner::serve(const xcb_selection_request_event_t &request)
{
    // Programs of before the present conventions leave the property to us.
    const xcb_atom_t property = request.property != XCB_NONE ? request.property : request.target;
    const bool timely = request.time == XCB_CURRENT_TIME || !isLater(m_since, request.time);
    bool converted = false;
    if (m_offer && timely) {
        if (request.target != connection().atom(X11Atom::Multiple))
            converted = convert(request.requestor, request.target, property);
        else if (request.property != XCB_NONE)
            converted = convertSeveral(request.requestor, property);
    }
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = converted ? property : XCB_NONE;
    xcb_send_event(connection().xcb(), 0, request.requestor, 0,
                   reinterpret_cast<const char *>(&notify));
    connection().flush();
}

bool X11SelectionOwner::convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property)
{
    xcb_connection_t *c = connection().xcb();
    const xcb_atom_t targets = connection().atom(X11Atom::Targets);
    const xcb_atom_t timestamp = connection().atom(X11Atom::Timestamp);
    if (target == targets) {
        std::vector<xcb_atom_t> all{targets, timestamp, connection().atom(X11Atom::Multiple)};
        for (const Form &form : m_forms)
            all.push_back(form.target);
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, requestor, property, XCB_ATOM_ATOM, 32,
                            all.size(), all.data());
        return true;
    }
    if (target == timestamp) {
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, requestor, property, XCB_ATOM_INTEGER, 32, 1,
                            &m_since);
        return true;
    }
    const auto form = std::find_if(m_forms.begin(), m_forms.end(),
                                   [&](const Form &f) { return f.target == target; });
    if (form == m_forms.end())
        return false;
    if (form->bytes.size() > X11IncrSender::pieceSize(connection())) {
        convertInPieces(requestor, property, *form);
        return true;
    }
    xcb_change_property(
        c, XCB_PROP_MODE_REPLACE, requestor, property, form->type, static_cast<uint8_t>(form->unit),
        static_cast<uint32_t>(form->bytes.size() * 8 / form->unit), form->bytes.constData());
    if (form->counts)
        m_offer->fetches->add(connection().processOf(requestor));
    return true;
}

bool X11SelectionOwner::convertSeveral(xcb_window_t requestor, xcb_atom_t property)
{
    // The property lists targets and properties in turn. Those that cannot be
    // converted are struck out in the answer.
    constexpr uint32_t mostPairs = 256;
    const auto list = connection().reply<xcb_get_property_reply>(xcb_get_property(
        connection().xcb(), 0, requestor, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 2 * mostPairs));
    if (!list || list->format != 32)
        return false;
    const auto *first = static_cast<const xcb_atom_t *>(xcb_get_property_value(list.get()));
    std::vector<xcb_atom_t> pairs(first, first + xcb_get_property_value_length(list.get()) / 4);
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
        if (pairs[i + 1] == XCB_NONE || !convert(requestor, pairs[i], pairs[i + 1]))
            pairs[i + 1] = XCB_NONE;
    }
    xcb_change_property(connection().xcb(), XCB_PROP_MODE_REPLACE, requestor, property,
                        connection().atom(X11Atom::AtomPair), 32, pairs.size(), pairs.data());
    return true;
}

void X11SelectionOwner::convertInPieces(xcb_window_t requestor, xcb_atom_t property,
                                        const Form &form)
{
    auto fetches = form.counts ? m_offer->fetches : nullptr;
    m_senders.push_back(std::make_unique<X11IncrSender>(
        connection(), requestor, property, form.type, form.unit, form.bytes,
        [this, fetches = std::move(fetches)](const X11IncrSender *sender, bool complete) {
            if (complete && fetches)
                fetches->add(connection().processOf(sender->requestor()));
            ended(sender);
        }));
}

void X11SelectionOwner::ended(const X11IncrSender *sender)
{
    const xcb_window_t requestor = sender->requestor();
    std::erase_if(m_senders, [&](const auto &each) { return each.get() == sender; });
    const bool more = std::any_of(m_senders.begin(), m_senders.end(),
                                  [&](const auto &each) { return each->requestor() == requestor; });
    if (!more) {
        const uint32_t nothing = 0;
        xcb_change_window_attributes(connection().xcb(), requestor, XCB_CW_EVENT_MASK, &nothing);
        connection().flush();
    }
}

} // namespace nivora::linuxdesktop
