#pragma once

#include <QMenu>

#include <memory>

namespace nivora {

// Opens the menu there, in the owner's keeping: it is deleted once it closes. The
// toolkit leaves menus out of what assistive tools see. An owner whose accessible
// object shows openMenuOf() as a child mends that, and an entry that such a tool
// chooses closes the menu as one that is clicked does.
void openMenu(std::unique_ptr<QMenu> menu, QWidget &owner, const QPoint &place);

// The one that is open now; null for none.
QMenu *openMenuOf(const QWidget &owner);

} // namespace nivora
