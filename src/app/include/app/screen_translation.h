#pragma once

#include "desktop/ocr_service.h"

#include "platform/services.h"
#include "platform/task.h"

#include <functional>

namespace nivora {

class FloatingPanelController;
class TranslationViewModel;

// The way from a region of the screen to its translation in the panel.
class ScreenTranslation
{
public:
    // The borrowed objects outlive this one.
    ScreenTranslation(const platform::Services &services, TranslationViewModel &session,
                      FloatingPanelController &panel);

    // Lets the user mark a region, reads it and opens the panel with its text.
    // Nobody has to be signed in for it. Where nothing comes of it, nothing is
    // shown. A capture that is still under way is given up for the new one.
    void captureOCR();

    // Called where this program may not see the screen.
    std::function<void()> onAccessMissing;

private:
    void capture();
    void recognize(const QByteArray &image);
    void translate(const QString &text);

    OCRService m_ocr;
    TranslationViewModel &m_session;
    FloatingPanelController &m_panel;
    platform::Task m_step; // the one that is under way
    platform::Task m_preparation;
};

} // namespace nivora
