#include "platform_linux/gtk_scale.h"

#include "x11_connection.h"

#include <QFile>
#include <QtEndian>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

namespace {

// Reads numbers as the settings' author wrote them, and nothing beyond the end.
class SettingsReader
{
public:
    explicit SettingsReader(const QByteArray &data)
        : m_data(data)
    {
    }

    bool isDamaged() const { return m_damaged; }
    void setBigEndian(bool big) { m_big = big; }

    template<typename Number>
    Number number()
    {
        const QByteArray bytes = take(sizeof(Number));
        if (bytes.isEmpty())
            return 0;
        return m_big ? qFromBigEndian<Number>(bytes.constData())
                     : qFromLittleEndian<Number>(bytes.constData());
    }

    QByteArray take(qsizetype count)
    {
        m_damaged = m_damaged || count > m_data.size() - m_place;
        if (m_damaged)
            return {};
        m_place += count;
        return m_data.mid(m_place - count, count);
    }

    // Of a string, together with what fills it up to whole words.
    QByteArray takeText(qsizetype count)
    {
        const QByteArray text = take(count);
        take((4 - count % 4) % 4);
        return text;
    }

private:
    const QByteArray &m_data;
    qsizetype m_place = 0;
    bool m_big = false;
    bool m_damaged = false;
};

constexpr quint8 typeInteger = 0;
constexpr quint8 typeString = 1;
constexpr quint8 typeColor = 2;

std::optional<int> scaleOfEnvironment(qint64 process)
{
    constexpr qint64 mostRead = 256 * 1024;
    QFile file(u"/proc/%1/environ"_s.arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray name = "GDK_SCALE="_ba;
    for (const QByteArray &entry : file.read(mostRead).split('\0')) {
        if (entry.startsWith(name))
            return entry.mid(name.size()).toInt();
    }
    return std::nullopt;
}

QByteArray desktopSettings(X11Connection &connection)
{
    constexpr uint32_t mostWords = 64 * 1024;
    xcb_connection_t *c = connection.xcb();
    const auto owner = connection.reply<xcb_get_selection_owner_reply>(
        xcb_get_selection_owner(c, connection.atom(X11Atom::XsettingsS0)));
    if (!owner || owner->owner == XCB_NONE)
        return {};
    const auto property = connection.reply<xcb_get_property_reply>(
        xcb_get_property(c, 0, owner->owner, connection.atom(X11Atom::XsettingsSettings),
                         connection.atom(X11Atom::XsettingsSettings), 0, mostWords));
    if (!property || property->format != 8)
        return {};
    return QByteArray(static_cast<const char *>(xcb_get_property_value(property.get())),
                      xcb_get_property_value_length(property.get()));
}

} // namespace

std::optional<int> desktopSetting(const QByteArray &settings, const QByteArray &name)
{
    SettingsReader reader(settings);
    constexpr quint8 mostSignificantFirst = 1;
    reader.setBigEndian(reader.number<quint8>() == mostSignificantFirst);
    reader.take(3);
    reader.number<quint32>(); // serial
    const auto count = reader.number<quint32>();
    for (quint32 i = 0; i < count && !reader.isDamaged(); ++i) {
        const auto type = reader.number<quint8>();
        reader.take(1);
        const QByteArray found = reader.takeText(reader.number<quint16>());
        reader.number<quint32>(); // serial of the last change
        if (type == typeInteger) {
            const auto value = reader.number<qint32>();
            if (found == name && !reader.isDamaged())
                return value;
        } else if (type == typeString) {
            reader.takeText(reader.number<quint32>());
        } else if (type == typeColor) {
            reader.take(8);
        } else {
            break;
        }
    }
    return std::nullopt;
}

int gtkScale(X11Connection &connection, qint64 process)
{
    std::optional<int> scale = scaleOfEnvironment(process);
    if (!scale && connection.isValid())
        scale = desktopSetting(desktopSettings(connection), "Gdk/WindowScalingFactor"_ba);
    return std::max(scale.value_or(1), 1);
}

} // namespace nivora::linuxdesktop
