#pragma once

#include "platform/login_item.h"

namespace nivora::linuxdesktop {

// A desktop entry in the user's autostart folder.
// https://specifications.freedesktop.org/autostart-spec/latest/
class XdgLoginItem final : public platform::LoginItem
{
public:
    // `folder` is the autostart folder, `program` the absolute path to start.
    XdgLoginItem(const QString &folder, const QString &program);

    // The folder that the environment names.
    static QString defaultFolder();

    bool isEnabled() const override;
    std::optional<QString> setEnabled(bool enabled) override;

private:
    QString m_path;
    QString m_program;
};

} // namespace nivora::linuxdesktop
