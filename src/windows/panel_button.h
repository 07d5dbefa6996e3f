#pragma once

#include <QAbstractButton>
#include <QString>

namespace nivora {

// The product's flat button: an optional text, an optional symbol beside it, and a
// tint below the pointer. It paints itself, so that it looks the same under every
// style and at every scale.
class PanelButton : public QAbstractButton
{
    Q_OBJECT

public:
    enum class Look { Plain, Prominent, Secondary };
    // What comes of pressing it, as assistive tools are told.
    enum class Kind {
        Action,
        Toggle,  // what it stands for is on while it is active
        Menu,    // opened by openMenu()
        Popover, // a window of its own
    };
    enum class SymbolPlace { BeforeText, AfterText };

    explicit PanelButton(Look look = Look::Plain, QWidget *parent = nullptr);

    void setKind(Kind kind) { m_kind = kind; }
    Kind kind() const { return m_kind; }
    void setSymbol(const QString &name, SymbolPlace place = SymbolPlace::BeforeText);
    // As tall as a field of a form, and as wide as there is room.
    void setLarge();
    // Shows the tint also while the pointer is elsewhere.
    void setActive(bool active);
    bool isActive() const { return m_active; }
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
    Kind m_kind = Kind::Action;
    QString m_symbol;
    SymbolPlace m_symbolPlace = SymbolPlace::BeforeText;
    bool m_large = false;
    bool m_active = false;
    bool m_dimmed = false;
    bool m_ring = false; // came here by the keyboard
};

} // namespace nivora
