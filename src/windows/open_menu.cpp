#include "open_menu.h"

namespace nivora {

void openMenu(std::unique_ptr<QMenu> menu, QWidget &owner, const QPoint &place)
{
    QMenu *opened = menu.release();
    opened->setParent(&owner, opened->windowFlags());
    opened->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(opened, &QMenu::triggered, opened, &QMenu::close);
    opened->popup(place);
}

QMenu *openMenuOf(const QWidget &owner)
{
    const auto menus = owner.findChildren<QMenu *>(Qt::FindDirectChildrenOnly);
    const auto open = std::ranges::find_if(menus, &QMenu::isVisible);
    return open == menus.end() ? nullptr : *open;
}

} // namespace nivora
