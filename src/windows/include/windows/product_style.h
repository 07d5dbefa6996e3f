#pragma once

#include <QProxyStyle>

namespace nivora {

// The looks of what the toolkit draws: slim scroll bars, fields with round corners,
// menus with the product's own check mark, and no motion for those who do not want any.
class ProductStyle : public QProxyStyle
{
    Q_OBJECT

public:
    ProductStyle();

    void setReducedMotion(bool reduced) { m_reducedMotion = reduced; }

    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                         const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                            QPainter *painter, const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;

private:
    bool m_reducedMotion = false;
};

} // namespace nivora
