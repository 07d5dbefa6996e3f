#pragma once

#include <QPoint>
#include <QRect>

#include <optional>

namespace nivora::screencapture {

// What the user has marked so far. All places are pixels of the screen.
//
// A corner is set with the mouse button or a key and stays; the other follows
// the pointer and the arrow keys. While the region is held as a whole, both move.
class RegionSelection
{
public:
    // `bounds`: where the pointer can go, the last row and column included.
    explicit RegionSelection(const QRect &bounds);

    QPoint pointer() const { return m_pointer; }
    bool hasCorner() const { return m_corner.has_value(); }

    // From the corner to the pointer, both included; empty before there is one.
    QRect region() const;
    // Whether it is large enough to hold a letter, and no slip of the hand.
    bool isWorthTaking() const;

    void setCorner();
    void dropCorner() { m_corner.reset(); }
    void setHeldAsWhole(bool held) { m_heldAsWhole = held; }

    // As far as the bounds allow.
    void movePointer(const QPoint &to);

private:
    QRect m_bounds;
    QPoint m_pointer;
    std::optional<QPoint> m_corner;
    bool m_heldAsWhole = false;
};

} // namespace nivora::screencapture
