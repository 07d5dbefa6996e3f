#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;
class QScrollArea;

namespace nivora {

class Announcer;
class ResultContent;
class Spinner;
class TranslationViewModel;

// The panel's middle: the translation as it arrives, or what stands in for it.
class ResultArea : public QWidget
{
    Q_OBJECT

public:
    // `session` outlives the view.
    explicit ResultArea(TranslationViewModel &session, QWidget *parent = nullptr);

    // Back to the top.
    void reset();
    // Gives the translation the focus; false while there is none to show.
    bool focusText(Qt::FocusReason reason);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    // The translation has come on show.
    void contentShown();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    enum class Showing { Nothing, Hint, Spinner, Error, Content };

    QWidget *makeError();
    QWidget *makeHint();
    Showing showing() const;
    void renderPhase();
    void announce();
    void layOut();
    int textHeight() const;
    int contentHeight() const;

    TranslationViewModel &m_session;
    QScrollArea *m_scroll;
    ResultContent *m_content;
    Spinner *m_spinner;
    // Made along with what holds them, which comes next.
    QLabel *m_errorMessage = nullptr;
    QWidget *m_error;
    QWidget *m_hint;
    Announcer *m_announcer;
    QTimer m_tight; // until less room than wished for counts as final
};

} // namespace nivora
