#pragma once

#include <QWidget>

namespace nivora {

class ContextPopover;
class PanelButton;
class Spinner;
class TranslationViewModel;

namespace platform {
class WindowSystem;
}

// The panel's top row: the direction, and what concerns the panel itself.
class PanelHeader : public QWidget
{
    Q_OBJECT

public:
    PanelHeader(TranslationViewModel &session, platform::WindowSystem &windowSystem,
                QWidget *parent = nullptr);

    void closePopover();

Q_SIGNALS:
    void closeRequested();

private:
    void renderDirection();
    void renderPhase();
    void renderPin();
    void renderContext();
    void openLanguageMenu();
    void toggleContext();

    TranslationViewModel &m_session;
    platform::WindowSystem &m_windowSystem;
    PanelButton *m_direction;
    Spinner *m_spinner;
    PanelButton *m_context;
    PanelButton *m_pin;
    ContextPopover *m_popover = nullptr; // made at its first use
};

} // namespace nivora
