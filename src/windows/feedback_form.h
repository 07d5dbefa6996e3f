#pragma once

#include "popover.h"

class QComboBox;
class QLabel;
class QLineEdit;

namespace nivora {

class Announcer;
class PanelButton;
class TranslationViewModel;

// Where the user reports what is wrong with the translation on show.
class FeedbackForm : public Popover
{
    Q_OBJECT

public:
    FeedbackForm(TranslationViewModel &session, platform::WindowSystem &windowSystem,
                 QWidget *panel);

    // Begins afresh.
    void open(QWidget &control);

private:
    QWidget *makeQuestion();
    QWidget *makeThanks();
    void render();
    void announce();
    void submit();
    void confirm() override;
    void close();

    TranslationViewModel &m_session;
    // Made along with what holds them, which comes next.
    QComboBox *m_reason = nullptr;
    QLineEdit *m_comment = nullptr;
    QLabel *m_failure = nullptr;
    PanelButton *m_cancel = nullptr;
    PanelButton *m_submit = nullptr;
    QLabel *m_thanksLine = nullptr;
    PanelButton *m_done = nullptr;
    QWidget *m_question;
    QWidget *m_thanks;
    Announcer *m_announcer;
    bool m_submittedByButton = false; // which lost the focus for it
};

} // namespace nivora
