#pragma once

#include <QAbstractButton>
#include <QString>

namespace nivora {

// The product's flat button: an optional text, an optional symbol, and a tint below
// the pointer. It paints itself, so that it looks the same under every style and at
// every scale. The symbol stands behind the text, in a large button before it.
class PanelButton : public QAbstractButton
{
    Q_OBJECT

public:
    enum class Look { Plain, Prominent, Secondary };

    explicit PanelButton(Look look = Look::Plain, QWidget *parent = nullptr);

    void setSymbol(const QString &name);
    // As tall as a field of a form, and as wide as there is room.
    void setLarge();
    // Shows the tint also while the pointer is elsewhere.
    void setActive(bool active);
    // Draws it as one that can do nothing now, though it may be pressed.
    void setDimmed(bool dimmed);
    // The tooltip, and the name that a screen reader speaks.
    void setHint(const QString &hint);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    int sidePadding() const;
    int contentWidth() const;
    QColor paintGround(QPainter &painter) const;

    Look m_look;
    QString m_symbol;
    bool m_large = false;
    bool m_active = false;
    bool m_dimmed = false;
    bool m_ring = false; // came here by the keyboard
};

} // namespace nivora
