#pragma once

#include <QWidget>

namespace nivora {

class PanelButton;
class Spinner;
class TranslationViewModel;

// The panel's top row: the direction, and what concerns the panel itself.
class PanelHeader : public QWidget
{
    Q_OBJECT

public:
    explicit PanelHeader(TranslationViewModel &session, QWidget *parent = nullptr);

Q_SIGNALS:
    void closeRequested();

private:
    void renderDirection();
    void renderPhase();
    void renderPin();
    void openLanguageMenu();

    TranslationViewModel &m_session;
    PanelButton *m_direction;
    Spinner *m_spinner;
    PanelButton *m_pin;
};

} // namespace nivora
