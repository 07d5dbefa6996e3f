#pragma once

#include <QWidget>

namespace nivora {

// A hairline from side to side.
class Divider : public QWidget
{
    Q_OBJECT

public:
    explicit Divider(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace nivora
