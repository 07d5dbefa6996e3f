#include "desktop/login_item_manager.h"

#include "platform/log.h"
#include "platform/login_item.h"

using namespace Qt::Literals::StringLiterals;

namespace nivora {

bool LoginItemManager::isEnabled() const
{
    return m_item.isEnabled();
}

bool LoginItemManager::set(bool enabled)
{
    const auto failure = m_item.setEnabled(enabled);
    if (failure)
        qCWarning(log::app).noquote() << u"[nivora] 开机自启设置失败: "_s + *failure;
    return !failure;
}

} // namespace nivora
