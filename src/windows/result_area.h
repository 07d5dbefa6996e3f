#pragma once

#include <QWidget>

class QLabel;

namespace nivora {

class PanelButton;
class Spinner;
class StreamingTextView;
class TranslationViewModel;

// The panel's middle: the translation as it arrives, or what stands in for it.
class ResultArea : public QWidget
{
    Q_OBJECT

public:
    // `session` outlives the view.
    explicit ResultArea(TranslationViewModel &session, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    enum class Showing { Nothing, Hint, Spinner, Error, Text };

    Showing showing() const;
    void renderPhase();
    void renderFont();
    void layOut();
    int contentHeight(int width) const;

    TranslationViewModel &m_session;
    StreamingTextView *m_text;
    Spinner *m_spinner;
    QWidget *m_error;
    QLabel *m_errorMessage;
    QWidget *m_hint;
};

} // namespace nivora
