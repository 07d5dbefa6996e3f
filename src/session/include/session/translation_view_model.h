#pragma once

#include "session/phase.h"

#include "core/language.h"
#include "core/token_usage.h"
#include "core/translation_error.h"
#include "core/translation_options.h"

#include "platform/selection.h"
#include "platform/task.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace nivora {

class BackTranslation;
class ReadingLine;
class ReadingService;
class SettingsStore;
class SpeechInputService;
class SpeechService;
class TranslationEngine;
class VariantList;
class VoiceInput;
struct FeedbackReport;

namespace platform {
class Clipboard;
class SettingsPanes;
} // namespace platform

// The state behind the panel: what it shows, what is being translated and in
// which direction. One object for the life of the process; every trigger resets
// it and runs it again. Main thread only; operations return at once.
class TranslationViewModel : public QObject
{
    Q_OBJECT

public:
    // What the session works with. Borrowed: all of it outlives the session.
    struct Parts
    {
        TranslationEngine &engine;
        const SettingsStore &settings;
        ReadingService &readings;
        platform::Clipboard &clipboard;
        platform::SettingsPanes &settingsPanes;
        // Absent where nothing can be read aloud or dictated.
        SpeechService *speech = nullptr;
        SpeechInputService *speechInput = nullptr;
    };

    explicit TranslationViewModel(const Parts &parts);
    ~TranslationViewModel() override;

    // Ways to the outside, each optional, set once before the first trigger.
    std::function<void(const QString &text)> insertHandler;
    std::function<std::vector<GlossaryTerm>()> glossaryProvider;
    std::function<void(const TokenUsage &)> usageRecorder;
    std::function<void(const QString &source, const QString &translation, Language from,
                       Language to)>
        historyRecorder;
    std::function<std::optional<QString>(const QString &source, Language target)> historyLookup;
    // Hands a report in; `done` is told whether it was taken.
    std::function<platform::Task(const FeedbackReport &, std::function<void(bool)> done)>
        feedbackHandler;

    QString sourceText() const { return m_sourceText; } // untrimmed
    QString contextText() const { return m_contextText; }
    QString translatedText() const { return m_translatedText; } // as far as it has arrived
    PanelMode mode() const { return m_mode; }
    Phase phase() const { return m_phase; }
    Language detectedSource() const { return m_detectedSource; }
    Language effectiveTarget() const { return m_effectiveTarget; }
    bool hasInsertTarget() const { return m_hasInsertTarget; }
    bool isPinned() const { return m_isPinned; }
    bool fromHistory() const { return m_fromHistory; }
    bool justCopied() const { return m_justCopied; }
    std::optional<qint64> lastTokens() const { return m_lastTokens; }
    QString lastTid() const { return m_lastTid; } // empty when the server gave none
    std::optional<platform::FocusDiag> lastFocusContext() const { return m_lastFocusContext; }
    const SettingsStore &settings() const { return m_settings; }

    // The reading of the Japanese side, in romaji or hiragana; empty without one.
    QString reading() const;
    // A Japanese result in Chinese again, as far as it has arrived.
    QString backTranslation() const;
    QStringList variants() const;
    bool loadingVariants() const;
    bool isSpeaking() const;
    bool isSpeechAvailable() const; // false once the desktop's speech service could not be reached
    bool isListening() const;
    QString voiceError() const; // empty when there is none
    // Whether the desktop's settings help against it.
    bool voiceErrorOpensSettings() const;
    FeedbackPhase feedbackPhase() const { return m_feedbackPhase; }

    bool canShowVariants() const;
    // What speakCurrent() would read: always the Japanese side, where there is one.
    std::optional<SpeechTarget> speechTarget() const;
    bool canSubmitFeedback() const;
    bool isTranslating() const;
    // Whether the text differs from the user's own language.
    bool sourceIsForeign() const;
    bool showReply() const;
    PrimaryAction primaryAction() const;

    // New text from outside: translates it now.
    void setSource(const QString &text, bool hasInsertTarget,
                   const std::optional<platform::FocusDiag> &context);
    // An empty panel to type in.
    void prepareManualInput(bool hasInsertTarget,
                            const std::optional<platform::FocusDiag> &context);
    // An empty panel to type an answer in; `background` is what is answered.
    void prepareReply(const QString &background, Language replyTo);
    // Fixes the target until the next trigger.
    void selectTarget(Language target);

    // The user changed one of the two boxes. Ends in sourceEdited().
    void editSource(const QString &text);
    void editContext(const QString &text);
    // Live translation after a rest of one second, or clearing of the result
    // that no longer belongs to the text. Nothing, if the source is what the
    // program itself wrote there last.
    void sourceEdited();

    void translateNow();
    void copyResult();
    void insert();
    void setPinned(bool pinned);

    // Asks for other phrasings of a Japanese result.
    void loadVariants();
    // Takes one of them as the result. Ends a run that is still under way.
    void useVariant(const QString &text);

    void speakCurrent();
    void stopSpeaking();

    // Begins a dictation into the source box, or ends it.
    void toggleVoice();
    // Closes the microphone; what was said so far counts no more.
    void stopListening();
    void openVoiceSettings();

    // Reports the result on show. `reason` is a raw value of FeedbackReason.
    void submitFeedback(const QString &reason, const QString &comment);
    // The form is closed: the next one begins afresh.
    void closeFeedback();

Q_SIGNALS:
    void sourceTextChanged();
    void contextTextChanged();
    // The translation was replaced as a whole, most often by nothing...
    void translatedTextReplaced();
    // ...or grew at its end. A view appends the piece; it never reads the whole.
    void translatedTextAppended(const QString &piece);
    void modeChanged();
    void phaseChanged();
    void directionChanged();
    void hasInsertTargetChanged();
    void isPinnedChanged();
    void fromHistoryChanged();
    void lastTokensChanged();
    void justCopiedChanged();
    void readingChanged();
    // As for the translation: replaced as a whole, or grown at its end.
    void backTranslationReplaced();
    void backTranslationAppended(const QString &piece);
    void variantsChanged();
    void loadingVariantsChanged();
    void isSpeakingChanged();
    void isSpeechAvailableChanged();
    void isListeningChanged();
    void voiceErrorChanged(); // or what it opens
    void feedbackPhaseChanged();

private:
    struct Run
    {
        QString source; // trimmed
        Language detected;
        Language target;
    };

    Language primaryLanguage() const;
    Language secondaryLanguage() const;
    Language applyDirection(const QString &trimmedSource);
    TranslationOptions options(Language target) const;
    bool reuseHistory(const Run &run, const TranslationOptions &options);
    void startRun(const Run &run, const TranslationOptions &options);
    void onPiece(const QString &piece);
    void onUsage(const TokenUsage &usage);
    void onFinished(const Run &run, const std::optional<TranslationError> &error);
    void afterTranslation(const Run &run, bool recordHistory);
    void invalidateTranslation();
    void cancelRun();
    void clearResult();
    void leaveResult();
    void hear(const QString &text, bool isFinal);

    template<typename Value>
    void assign(Value &field, Value value, void (TranslationViewModel::*changed)())
    {
        if (field == value)
            return;
        field = std::move(value);
        Q_EMIT(this->*changed)();
    }
    void setSourceText(const QString &text);
    void setContextText(const QString &text);
    void setDirection(Language detected, Language target);
    void setTranslatedText(const QString &text);

    TranslationEngine &m_engine;
    const SettingsStore &m_settings;
    platform::Clipboard &m_clipboard;
    SpeechService *m_speech;
    std::unique_ptr<ReadingLine> m_reading;
    std::unique_ptr<BackTranslation> m_backTranslation;
    std::unique_ptr<VariantList> m_variants;
    std::unique_ptr<VoiceInput> m_voice;

    QString m_sourceText;
    QString m_contextText;
    QString m_translatedText;
    PanelMode m_mode = PanelMode::Selection;
    Phase m_phase;
    Language m_detectedSource = Language::Auto;
    Language m_effectiveTarget = Language::Chinese;
    std::optional<Language> m_manualTarget; // overrides the direction rule
    bool m_hasInsertTarget = false;
    bool m_isPinned = false;
    bool m_fromHistory = false;
    bool m_justCopied = false;
    FeedbackPhase m_feedbackPhase = FeedbackPhase::Idle;
    std::optional<qint64> m_lastTokens; // of this result, over all its requests
    QString m_lastTid;
    std::optional<platform::FocusDiag> m_lastFocusContext;
    // The source text that the program wrote itself: an editor that reports it
    // back reports no edit of the user's.
    std::optional<QString> m_programmaticText;

    platform::Task m_task;      // the current run
    platform::Task m_debounce;  // the pending run of live translation
    platform::Task m_copyReset; // takes justCopied back
    // Each goes on to its end, whatever the panel shows by then.
    std::vector<platform::Task> m_reports;
};

} // namespace nivora
