#pragma once

#include "text_flow.h"

#include <QAbstractButton>

namespace nivora {

// One other phrasing of the result: its text in as many lines as it takes.
class VariantButton : public QAbstractButton
{
    Q_OBJECT

public:
    VariantButton(const QString &variant, const QFont &font, QWidget *parent);

    const QString &variant() const { return m_variant; }
    // Lays it out in this width, in logical pixels, and tells its height.
    int layOut(int width);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    // Not the button's own text, where an ampersand would mean a shortcut.
    QString m_variant;
    TextFlow m_flow;
    bool m_ring = false;
};

} // namespace nivora
