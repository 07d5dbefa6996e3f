#include "platform_linux/xdg_login_item.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

namespace {

// The Exec key's quoting, and the key file's own on top of it.
// https://specifications.freedesktop.org/desktop-entry-spec/latest/exec-variables.html
QByteArray quotedForExec(const QString &program)
{
    QByteArray quoted;
    for (const char c : program.toUtf8()) {
        if (c == '"' || c == '`' || c == '$' || c == '\\')
            quoted += c == '\\' ? "\\\\\\" : "\\\\";
        if (c == '%')
            quoted += '%';
        quoted += c;
    }
    return '"' + quoted + '"';
}

// The value of a key in the entry's own group.
std::optional<QByteArray> entryValue(const QByteArray &file, QByteArrayView key)
{
    bool inEntry = false;
    for (const QByteArray &line : file.split('\n')) {
        const QByteArray trimmed = line.trimmed();
        if (trimmed.startsWith('['))
            inEntry = trimmed == "[Desktop Entry]";
        const qsizetype equals = trimmed.indexOf('=');
        if (inEntry && equals > 0 && trimmed.first(equals).trimmed() == key)
            return trimmed.sliced(equals + 1).trimmed();
    }
    return std::nullopt;
}

} // namespace

XdgLoginItem::XdgLoginItem(const QString &folder, const QString &program)
    : m_path(folder + u"/app.nivora.desktop"_s)
    , m_program(program)
{
}

QString XdgLoginItem::defaultFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/autostart"_s;
}

bool XdgLoginItem::isEnabled() const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray entry = file.readAll();
    // The desktops' own settings switch an entry off with one of these.
    return entryValue(entry, "Exec") && entryValue(entry, "Hidden") != "true" &&
           entryValue(entry, "X-GNOME-Autostart-enabled") != "false";
}

std::optional<QString> XdgLoginItem::setEnabled(bool enabled)
{
    if (!enabled) {
        QFile file(m_path);
        if (!file.exists() || file.remove())
            return std::nullopt;
        return file.errorString();
    }
    const QDir folder = QFileInfo(m_path).dir();
    if (!folder.mkpath(u"."_s))
        return u"%1: cannot be made"_s.arg(folder.path());
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    file.write("[Desktop Entry]\n"
               "Type=Application\n"
               "Name=Nivora\n"
               "Exec=" +
               quotedForExec(m_program) +
               "\n"
               "Icon=app.nivora\n"
               "X-GNOME-Autostart-enabled=true\n");
    if (!file.commit())
        return file.errorString();
    return std::nullopt;
}

} // namespace nivora::linuxdesktop
