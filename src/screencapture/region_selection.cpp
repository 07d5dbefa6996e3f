#include "region_selection.h"

#include <algorithm>

namespace nivora::screencapture {

namespace {

constexpr int leastSide = 4; // pixels

QPoint within(const QRect &bounds, const QPoint &point)
{
    return {std::clamp(point.x(), bounds.left(), bounds.right()),
            std::clamp(point.y(), bounds.top(), bounds.bottom())};
}

} // namespace

RegionSelection::RegionSelection(const QRect &bounds)
    : m_bounds(bounds)
    , m_pointer(bounds.center())
{
}

QRect RegionSelection::region() const
{
    if (!m_corner)
        return {};
    return {QPoint(std::min(m_corner->x(), m_pointer.x()), std::min(m_corner->y(), m_pointer.y())),
            QPoint(std::max(m_corner->x(), m_pointer.x()), std::max(m_corner->y(), m_pointer.y()))};
}

bool RegionSelection::isWorthTaking() const
{
    return region().width() >= leastSide && region().height() >= leastSide;
}

void RegionSelection::setCorner()
{
    m_corner = m_pointer;
}

void RegionSelection::movePointer(const QPoint &to)
{
    const QPoint target = within(m_bounds, to);
    if (m_corner && m_heldAsWhole) {
        // The region keeps its size at the edges.
        const QPoint moved = within(m_bounds, *m_corner + (target - m_pointer));
        m_pointer += moved - *m_corner;
        m_corner = moved;
        return;
    }
    m_pointer = target;
}

} // namespace nivora::screencapture
