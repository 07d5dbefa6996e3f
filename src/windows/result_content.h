#pragma once

#include <QWidget>

#include <vector>

namespace nivora {

class FlowingText;
class Spinner;
class TranslationViewModel;
class VariantButton;

// The translation and what hangs on it, one below the other in a fixed width.
class ResultContent : public QWidget
{
    Q_OBJECT

public:
    // Left free on each side, for the focus ring around a text.
    static constexpr QSize room{6, 3}; // logical pixels

    // `width` of the texts, in logical pixels. `session` outlives the view.
    ResultContent(TranslationViewModel &session, int width, QWidget *parent = nullptr);
    ~ResultContent() override;

    void focusTranslation(Qt::FocusReason reason);

Q_SIGNALS:
    // Its own height has changed.
    void heightChanged();
    // This place was brought up by the keyboard or by a selection.
    void placeShown(const QRect &place);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    FlowingText *makeText(bool annotation, const QString &name);
    void renderFonts();
    void renderReading();
    void renderBackTranslation();
    void renderVariants();
    void layOut();

    TranslationViewModel &m_session;
    int m_width;
    FlowingText *m_translation;
    FlowingText *m_reading;
    FlowingText *m_backTranslation;
    QWidget *m_loading;
    std::vector<VariantButton *> m_variants; // owned as children
};

} // namespace nivora
