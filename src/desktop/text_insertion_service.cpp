#include "desktop/text_insertion_service.h"

#include "desktop/application_gestures.h"

#include "platform/keys.h"
#include "platform/log.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr auto backupBound = 300ms;
// From lending the text to the key press: the panel's window has gone by then
// and the focus is usually back.
constexpr auto pressDelay = 80ms;
// As long as a slow program may take to fetch the text.
constexpr auto responseBound = 1000ms;
// From the key press to the old clipboard.
constexpr auto restoreDelay = 300ms;
// While waiting for the focus, or for a slow program to fetch the text.
constexpr auto pollStep = 20ms;
constexpr int focusPolls = 15;
constexpr int fetchPolls = 50;

} // namespace

TextInsertionService::~TextInsertionService()
{
    giveBack();
}

void TextInsertionService::insertViaPaste(const QString &text,
                                          const platform::ForeignWindow &window)
{
    if (text.isEmpty())
        return;
    m_window = window;
    // A text of ours may still be lent from the call before; the user's own
    // content is then already kept.
    if (m_backup)
        return lend(text);
    m_step = m_services.clipboard.read(backupBound, [this, text](auto contents) {
        if (!contents)
            qCWarning(log::app) << "The clipboard's owner does not answer: its content is replaced";
        m_backup = std::move(contents);
        lend(text);
    });
}

void TextInsertionService::lend(const QString &text)
{
    m_services.clipboard.setText(text, platform::Clipboard::Privacy::Concealed);
    m_step = platform::delay(pressDelay, [this] {
        if (m_services.windowSystem.hasInputFocus(m_window.id))
            return awaitResponse();
        m_services.windowSystem.requestActivation(m_window.id);
        awaitFocus(focusPolls);
    });
}

void TextInsertionService::awaitFocus(int attemptsLeft)
{
    if (m_services.windowSystem.hasInputFocus(m_window.id))
        return awaitResponse();
    // A paste into another window is worse than none.
    if (attemptsLeft == 0)
        return leaveOnClipboard("the window to paste into has lost the focus");
    m_step = platform::delay(pollStep, [this, attemptsLeft] { awaitFocus(attemptsLeft - 1); });
}

void TextInsertionService::awaitResponse()
{
    // A program that hangs would paste when it wakes up, whatever the clipboard
    // holds by then.
    m_step =
        m_services.windowSystem.isResponding(m_window.id, responseBound, [this](bool responding) {
            if (responding && m_services.windowSystem.hasInputFocus(m_window.id))
                return press();
            leaveOnClipboard("the window to paste into does not answer");
        });
}

void TextInsertionService::press()
{
    const auto gesture = gesturesFor(m_window).paste;
    if (!gesture || !m_services.keySynthesizer.press(*gesture))
        return leaveOnClipboard("the program takes no paste keys");
    m_step = platform::delay(restoreDelay, [this] { awaitFetch(fetchPolls); });
}

void TextInsertionService::awaitFetch(int attemptsLeft)
{
    // A slow program that has not asked yet would paste the old content. A
    // clipboard manager that has asked is not the one.
    if (m_services.clipboard.fetchCount(m_window.processId) > 0 || attemptsLeft == 0)
        return giveBack();
    m_step = platform::delay(pollStep, [this, attemptsLeft] { awaitFetch(attemptsLeft - 1); });
}

void TextInsertionService::leaveOnClipboard(const char *reason)
{
    qCWarning(log::app) << "The text stays on the clipboard:" << reason;
    m_backup.reset();
    if (onTextLeftOnClipboard)
        onTextLeftOnClipboard();
}

void TextInsertionService::giveBack()
{
    if (const auto backup = std::exchange(m_backup, std::nullopt))
        m_services.clipboard.setContents(*backup);
}

} // namespace nivora
