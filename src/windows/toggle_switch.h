#pragma once

#include <QAbstractButton>

namespace nivora {

// A check box that looks like a switch, without a text of its own.
class ToggleSwitch : public QAbstractButton
{
    Q_OBJECT

public:
    explicit ToggleSwitch(QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    bool m_ring = false; // came here by the keyboard
};

} // namespace nivora
