#include "divider.h"

#include "windows/theme.h"

#include <QPainter>

namespace nivora {

Divider::Divider(QWidget *parent)
    : QWidget(parent)
{
    setFixedHeight(1);
}

void Divider::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), hairline(palette()));
}

} // namespace nivora
