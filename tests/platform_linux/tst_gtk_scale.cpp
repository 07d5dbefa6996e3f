#include "platform_linux/gtk_scale.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;

namespace {

// As a settings daemon writes them: an integer, a text and a colour before the
// one that is asked for.
QByteArray settings(bool bigEndian)
{
    QByteArray data;
    const auto number = [&](auto value) {
        for (std::size_t i = 0; i < sizeof value; ++i) {
            const auto shift = 8 * (bigEndian ? sizeof value - 1 - i : i);
            data.append(char((value >> shift) & 0xFF));
        }
    };
    const auto begin = [&](quint8 type, const QByteArray &name) {
        data.append(char(type)).append('\0');
        number(quint16(name.size()));
        data.append(name).append((4 - name.size() % 4) % 4, '\0');
        number(quint32(3)); // serial
    };
    data.append(char(bigEndian ? 1 : 0)).append(3, '\0');
    number(quint32(7)); // serial
    number(quint32(4));
    begin(0, "Xft/DPI");
    number(quint32(196'608));
    begin(1, "Net/ThemeName");
    number(quint32(7));
    data.append("Adwaita").append('\0');
    begin(2, "Net/Color");
    data.append(8, '\x11');
    begin(0, "Gdk/WindowScalingFactor");
    number(quint32(2));
    return data;
}

} // namespace

class TestGtkScale : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsASettingInEitherByteOrder()
    {
        for (const bool bigEndian : {false, true}) {
            const QByteArray data = settings(bigEndian);
            QCOMPARE(linuxdesktop::desktopSetting(data, "Gdk/WindowScalingFactor"), 2);
            QCOMPARE(linuxdesktop::desktopSetting(data, "Xft/DPI"), 196'608);
            QVERIFY(!linuxdesktop::desktopSetting(data, "Net/ThemeName"));
            QVERIFY(!linuxdesktop::desktopSetting(data, "Gdk/UnscaledDPI"));
        }
    }

    void survivesDamagedSettings()
    {
        const QByteArray data = settings(false);
        for (qsizetype length = 0; length < data.size(); ++length)
            QVERIFY(!linuxdesktop::desktopSetting(data.first(length), "Gdk/WindowScalingFactor"));
        for (qsizetype place = 0; place < data.size(); ++place) {
            QByteArray damaged = data;
            damaged[place] = '\xFF';
            linuxdesktop::desktopSetting(damaged, "Gdk/WindowScalingFactor"); // returns
        }
    }
};

QTEST_GUILESS_MAIN(TestGtkScale)
#include "tst_gtk_scale.moc"
