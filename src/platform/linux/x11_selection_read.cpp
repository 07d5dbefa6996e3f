#include "x11_selection_read.h"

#include <set>

namespace nivora::linuxdesktop {

namespace {

// Far more than any program offers; a bound for one that makes targets up.
constexpr qsizetype mostTargets = 512;

bool holdsData(const QByteArray &target)
{
    static constexpr const char *others[] = {
        // answered by the owner's side of the protocol itself
        "MULTIPLE",
        "TARGETS",
        "TIMESTAMP",
        // requests to do something
        "DELETE",
        "INSERT_PROPERTY",
        "INSERT_SELECTION",
        "SAVE_TARGETS",
        // names of things in the server, or in the owner's memory, that end with it
        "BITMAP",
        "CLIENT_WINDOW",
        "COLORMAP",
        "DRAWABLE",
        "GTK_TEXT_BUFFER_CONTENTS",
        "PIXMAP",
        "WINDOW",
    };
    return !target.isEmpty() &&
           std::find(std::begin(others), std::end(others), target) == std::end(others);
}

} // namespace

X11SelectionRead::X11SelectionRead(X11Connection &connection, X11Requestors &requestors,
                                   xcb_atom_t selection, QDeadlineTimer deadline)
    : m_connection(connection)
    , m_requestors(requestors)
    , m_selection(selection)
    , m_time(connection.serverTime())
{
    m_deadline.setSingleShot(true);
    m_deadline.setTimerType(Qt::PreciseTimer);
    connect(&m_deadline, &QTimer::timeout, this, [this] { fail(); });
    m_deadline.start(static_cast<int>(deadline.remainingTime()));
}

void X11SelectionRead::convert(xcb_atom_t target,
                               std::function<void(std::optional<X11Transfer::Data>)> done)
{
    m_transfer = std::make_unique<X11Transfer>(m_connection, m_requestors, m_selection, target,
                                               m_time, std::move(done));
}

void X11SelectionRead::stop()
{
    m_deadline.stop();
    m_transfer.reset();
}

X11ContentsRead::X11ContentsRead(X11Connection &connection, X11Requestors &requestors,
                                 xcb_atom_t selection, QDeadlineTimer deadline, Done done)
    : X11SelectionRead(connection, requestors, selection, deadline)
    , m_done(std::move(done))
{
    convert(connection.atom(X11Atom::Targets),
            [this](const std::optional<X11Transfer::Data> &targets) { targetsArrived(targets); });
}

void X11ContentsRead::targetsArrived(const std::optional<X11Transfer::Data> &targets)
{
    std::vector<xcb_atom_t> atoms;
    if (targets && targets->unit == 32) {
        const auto *first = reinterpret_cast<const xcb_atom_t *>(targets->bytes.constData());
        atoms.assign(first, first + std::min(targets->bytes.size() / qsizetype(sizeof(xcb_atom_t)),
                                             mostTargets));
    } else {
        // An owner that does not say what it has: all that can be asked for is text.
        atoms = {connection().atom(X11Atom::Utf8String), XCB_ATOM_STRING};
    }
    const QByteArrayList names = connection().atomNames(atoms);
    std::set<xcb_atom_t> seen;
    for (std::size_t i = 0; i < atoms.size(); ++i) {
        if (holdsData(names[i]) && seen.insert(atoms[i]).second)
            m_targets.emplace_back(atoms[i], names[i]);
    }
    convertNext();
}

void X11ContentsRead::convertNext()
{
    if (m_targets.empty()) {
        finish();
        return;
    }
    const auto [atom, name] = m_targets.front();
    m_targets.pop_front();
    convert(atom, [this, name = name](std::optional<X11Transfer::Data> data) {
        if (data) {
            m_types.push_back(data->type);
            m_contents.items.push_back({name, {}, data->unit, std::move(data->bytes)});
        }
        convertNext();
    });
}

void X11ContentsRead::finish()
{
    const QByteArrayList types = connection().atomNames(m_types);
    for (std::size_t i = 0; i < m_types.size(); ++i)
        m_contents.items[i].type = types[i];
    stop();
    const auto done = std::move(m_done);
    done(this, std::move(m_contents));
}

void X11ContentsRead::fail()
{
    stop();
    const auto done = std::move(m_done);
    done(this, std::nullopt);
}

X11TextRead::X11TextRead(X11Connection &connection, X11Requestors &requestors, xcb_atom_t selection,
                         QDeadlineTimer deadline, Done done)
    : X11SelectionRead(connection, requestors, selection, deadline)
    , m_done(std::move(done))
    , m_targets{connection.atom(X11Atom::Utf8String), connection.atom(X11Atom::TextPlainUtf8),
                XCB_ATOM_STRING}
{
    convertNext();
}

void X11TextRead::convertNext()
{
    if (m_targets.empty()) {
        fail();
        return;
    }
    const xcb_atom_t target = m_targets.front();
    m_targets.pop_front();
    convert(target, [this](const std::optional<X11Transfer::Data> &data) {
        if (!data || data->unit != 8) {
            convertNext();
            return;
        }
        // The type says what the bytes are: STRING is Latin-1 by definition,
        // also where UTF8_STRING was asked for.
        const QString text = data->type == XCB_ATOM_STRING ? QString::fromLatin1(data->bytes)
                                                           : QString::fromUtf8(data->bytes);
        stop();
        const auto done = std::move(m_done);
        done(this, text);
    });
}

void X11TextRead::fail()
{
    stop();
    const auto done = std::move(m_done);
    done(this, std::nullopt);
}

} // namespace nivora::linuxdesktop
