#include "app/screen_translation.h"

#include "session/translation_view_model.h"
#include "windows/floating_panel_controller.h"

#include "platform/log.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

// Until other programs have drawn what our menu or panel stood above.
constexpr auto redrawTime = 150ms;
// Nobody marks a region sooner, and what comes before is for showing the screen.
constexpr auto markingTime = 300ms;

void logNothing()
{
    qCDebug(log::app).noquote() << u"OCR: 无文字或已取消"_s;
}

} // namespace

ScreenTranslation::ScreenTranslation(const platform::Services &services,
                                     TranslationViewModel &session, FloatingPanelController &panel)
    : m_ocr(services.screenCapture, services.textRecognizer)
    , m_session(session)
    , m_panel(panel)
{
}

void ScreenTranslation::captureOCR()
{
    m_step = m_ocr.queryAccess([this](bool permitted) {
        if (!permitted) {
            if (onAccessMissing)
                onAccessMissing();
            return;
        }
        m_panel.hide();
        m_preparation.cancel();
        m_step = platform::delay(redrawTime, [this] { capture(); });
    });
}

void ScreenTranslation::capture()
{
    m_step = m_ocr.capture({u"-i"_s, u"-x"_s}, [this](const std::optional<QByteArray> &image) {
        if (image)
            return recognize(*image);
        m_preparation.cancel();
        logNothing();
    });
    m_preparation = platform::delay(markingTime, [this] { m_preparation = m_ocr.prepare(); });
}

void ScreenTranslation::recognize(const QByteArray &image)
{
    m_step = m_ocr.recognize(image, [this](const std::optional<QString> &text) {
        if (text)
            translate(*text);
        else
            logNothing();
    });
    m_preparation.cancel(); // what it prepared is in use
}

void ScreenTranslation::translate(const QString &text)
{
    qCDebug(log::app).noquote() << u"OCR: 识别到 %1 字"_s.arg(text.size());
    m_session.setSource(text, false, std::nullopt);
    m_panel.show(PanelMode::Selection, std::nullopt);
}

} // namespace nivora
