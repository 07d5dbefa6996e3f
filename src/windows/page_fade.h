#pragma once

#include <QPixmap>
#include <QVariantAnimation>
#include <QWidget>

namespace nivora {

// Lets what was there before dissolve into what is there now. Lies over a widget,
// and is hidden but for that moment.
class PageFade : public QWidget
{
    Q_OBJECT

public:
    explicit PageFade(QWidget *pages);

    // `before`: how the pages looked before they changed.
    void begin(const QPixmap &before);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPixmap m_before;
    QVariantAnimation m_opacity;
};

} // namespace nivora
