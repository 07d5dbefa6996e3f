#pragma once

#include "platform/clipboard.h"
#include "platform/services.h"
#include "platform/task.h"
#include "platform/window_system.h"

#include <QString>

#include <functional>
#include <optional>

namespace nivora {

// Writes a text into the program that the user came from, by lending it to the
// clipboard and pressing the program's paste keys. The clipboard's old content
// comes back afterwards.
class TextInsertionService
{
public:
    explicit TextInsertionService(const platform::Services &services)
        : m_services(services)
    {
    }

    // The clipboard's old content comes back now, where it has not yet.
    ~TextInsertionService();
    TextInsertionService(const TextInsertionService &) = delete;
    TextInsertionService &operator=(const TextInsertionService &) = delete;

    // Returns at once; the work takes about 0.4 s. The keys are pressed only
    // while `window` has the focus. Where that cannot be had, or the program has
    // no way to paste, the text stays on the clipboard for the user to paste, and
    // onTextLeftOnClipboard tells.
    // A second call within that time takes the place of the first.
    void insertViaPaste(const QString &text, const platform::ForeignWindow &window);

    // The text could not be put into the program and is on the clipboard instead,
    // where the user's own content was. Called at most once for each text.
    std::function<void()> onTextLeftOnClipboard;

    // From the call until the clipboard is the user's again, at most about 3 s.
    bool isUnderWay() const { return m_step.isRunning(); }

private:
    void lend(const QString &text);
    void awaitFocus(int attemptsLeft);
    void awaitResponse();
    void press();
    void awaitFetch(int attemptsLeft);
    void leaveOnClipboard(const char *reason);
    void giveBack();

    platform::Services m_services;
    platform::ForeignWindow m_window;
    // The user's clipboard while ours is lent to it.
    std::optional<platform::ClipboardContents> m_backup;
    platform::Task m_step;
};

} // namespace nivora
