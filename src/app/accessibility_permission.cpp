#include "app/accessibility_permission.h"

#include "app/app_ui_state.h"

#include "desktop/permissions_manager.h"
#include "windows/alert.h"

#include "platform/accessibility.h"
#include "platform/log.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr auto period = 1500ms;
// From the request to switch accessibility on to the word that it cannot be had.
constexpr auto bound = 3000ms;

} // namespace

AccessibilityPermission::AccessibilityPermission(platform::Accessibility &accessibility,
                                                 PermissionsManager &settings, AppUIState &state)
    : m_accessibility(accessibility)
    , m_settings(settings)
    , m_state(state)
{
}

void AccessibilityPermission::obtain(std::function<void(bool)> granted)
{
    m_state.setAccessibilityTrusted(m_accessibility.isTrusted());
    if (m_state.accessibilityTrusted()) {
        m_poll.cancel();
        return granted(false);
    }
    qCDebug(log::app).noquote() << u"未授权辅助功能, 弹出引导并等待授权"_s;
    ask(tr("Nivora 需要辅助功能权限"),
        tr("开启后，桌面会把选中的文字和它的位置告诉 "
           "Nivora，双击 Shift 才可用。将为本次会话打开辅助功能服务（AT-SPI）；"
           "已在运行的程序可能要重新启动后才会响应。"));
    wait(std::move(granted));
}

void AccessibilityPermission::wait(std::function<void(bool)> granted)
{
    m_poll = platform::delay(period, [this, granted = std::move(granted)]() mutable {
        if (!m_accessibility.isTrusted())
            return wait(std::move(granted));
        m_state.setAccessibilityTrusted(true);
        m_prompt.cancel();
        granted(true);
    });
}

void AccessibilityPermission::ask(const QString &message, const QString &details)
{
    m_prompt = showAlert({message, details, {tr("开启"), tr("取消")}}, [this](int button) {
        if (button == 0)
            switchOn([this] { tellOfFailure(); });
    });
}

void AccessibilityPermission::switchOn()
{
    switchOn([this] {
        if (!m_settings.openAccessibilitySettings())
            tellOfFailure();
    });
}

void AccessibilityPermission::switchOn(const std::function<void()> &failed)
{
    m_accessibility.requestTrust();
    m_prompt = platform::delay(bound, [this, failed] {
        if (m_accessibility.isTrusted())
            return;
        qCWarning(log::app) << "The accessibility service could not be switched on";
        failed();
    });
}

void AccessibilityPermission::tellOfFailure()
{
    m_prompt = showAlert({tr("辅助功能服务没有响应"),
                          tr("请确认已安装 at-spi2-core 并且会话总线可用。在此之前可以使用 ⌃⌥O。"),
                          {tr("好")}},
                         [](int) {});
}

void AccessibilityPermission::openSettings()
{
    if (m_settings.openAccessibilitySettings())
        return;
    const QString message = tr("没有找到系统设置程序");
    if (m_accessibility.isTrusted())
        m_prompt =
            showAlert({message, tr("辅助功能服务（AT-SPI）已经打开。"), {tr("好")}}, [](int) {});
    else
        ask(message, tr("Nivora 可以直接打开辅助功能服务（AT-SPI）。"));
}

} // namespace nivora
