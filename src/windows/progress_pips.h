#pragma once

#include <QVariantAnimation>
#include <QWidget>

namespace nivora {

// A capsule for each step of a way; the one of the current step is wide.
class ProgressPips : public QWidget
{
    Q_OBJECT

public:
    ProgressPips(int count, QWidget *parent);

    void setCurrent(int step);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_count;
    int m_previous = 0;
    int m_current = 0;
    QVariantAnimation m_way; // from the previous step to the current one
};

} // namespace nivora
