#pragma once

#include <QString>

namespace nivora {

enum class PanelMode {
    Selection, // text came from outside and is shown read-only
    Compose,   // the user types
    Reply,     // the user types an answer; the other party's text is background
};

// Where one translation stands. Two errors are equal if their messages are.
struct Phase
{
    enum class Kind { Idle, Loading, Streaming, Done, Error };

    Kind kind = Kind::Idle;
    QString message; // of an error, for the user

    static Phase error(const QString &message) { return {Kind::Error, message}; }

    bool operator==(const Phase &) const = default;
};

// Where the user's report on a translation stands.
enum class FeedbackPhase { Idle, Sending, Sent, Failed };

// What the panel's main button and its key do at this moment.
enum class PrimaryAction { Replace, Insert, Copy, None };

// What is to be read aloud.
struct SpeechTarget
{
    QString text;
    QString language; // "ja-JP"

    bool operator==(const SpeechTarget &) const = default;
};

} // namespace nivora
