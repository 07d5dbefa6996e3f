// The part of the session that reports on a translation.
#include "session/translation_view_model.h"

#include "core/feedback_service.h"
#include "stores/settings_store.h"

namespace nivora {

bool TranslationViewModel::canSubmitFeedback() const
{
    return feedbackHandler && !m_translatedText.isEmpty() && !m_settings.useCustomBackend.value();
}

void TranslationViewModel::submitFeedback(const QString &reason, const QString &comment)
{
    if (!feedbackHandler || m_translatedText.isEmpty())
        return;
    FeedbackReport report{
        m_sourceText, m_translatedText, m_effectiveTarget, m_lastTid, reason, comment, {}};
    if (m_lastFocusContext)
        report.context = QString::fromUtf8(m_lastFocusContext->toJson());
    assign(m_feedbackPhase, FeedbackPhase::Sending, &TranslationViewModel::feedbackPhaseChanged);
    std::erase_if(m_reports, [](const platform::Task &each) { return !each.isRunning(); });
    m_reports.push_back(feedbackHandler(report, [this](bool taken) {
        assign(m_feedbackPhase, taken ? FeedbackPhase::Sent : FeedbackPhase::Failed,
               &TranslationViewModel::feedbackPhaseChanged);
    }));
}

void TranslationViewModel::closeFeedback()
{
    assign(m_feedbackPhase, FeedbackPhase::Idle, &TranslationViewModel::feedbackPhaseChanged);
}

} // namespace nivora
