#include "updates/updater.h"

#include "updates/sparkle_gentle_reminders.h"

#include "platform/idle_monitor.h"
#include "platform/log.h"
#include "platform/preferences.h"
#include "platform/web_browser.h"

#include <QRandomGenerator>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

const auto skippedVersionKey = u"skippedUpdateVersion"_s;

} // namespace

Updater::Updater(const Parts &parts, Versions versions, const Schedule &schedule)
    : m_parts(parts)
    , m_versions(std::move(versions))
    , m_schedule(schedule)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::CoarseTimer); // together with what else wakes the machine
    connect(&m_timer, &QTimer::timeout, this, &Updater::checkBySchedule);
}

Updater::Updater(const Parts &parts, Versions versions)
    : Updater(parts, std::move(versions), Schedule())
{
}

void Updater::start()
{
    m_timer.start(m_schedule.first);
}

void Updater::checkBySchedule()
{
    const auto jitter = QRandomGenerator::global()->bounded(quint64(m_schedule.jitter.count()) + 1);
    m_timer.start(m_schedule.period + std::chrono::milliseconds(jitter));
    // What is on the screen is the user's to end.
    if (m_phase != Phase::Quiet)
        return;
    m_wait.cancel();
    m_request = m_parts.server.feed(
        [this](const UpdateServer::Result &result) { take(result, /*userInitiated=*/false); });
}

void Updater::checkForUpdates()
{
    m_wait.cancel();
    m_opening.cancel();
    enter(Phase::Checking);
    Q_EMIT presented(true);
    m_request = m_parts.server.feed(
        [this](const UpdateServer::Result &result) { take(result, /*userInitiated=*/true); });
}

void Updater::take(const UpdateServer::Result &result, bool userInitiated)
{
    if (const auto *problem = std::get_if<QString>(&result)) {
        qCInfo(log::app) << "The update feed could not be fetched";
        if (userInitiated)
            fail(*problem);
        return;
    }
    const auto &feed = std::get<UpdateServer::Document>(result);
    const FeedAnswer answer =
        newerRelease(feed.bytes, feed.url, m_versions.program, m_versions.system);
    if (!answer.newer) {
        if (userInitiated && answer.isFeed)
            enter(Phase::UpToDate);
        else if (userInitiated)
            fail(tr("更新服务器没有给出版本列表"));
        return;
    }
    if (userInitiated) {
        m_release = answer.newer;
        m_parts.delegate.standardUserDriverWillHandleShowingUpdate(true, *m_release, {true});
        return enter(Phase::Found);
    }
    if (m_parts.preferences.string(skippedVersionKey) != answer.newer->version)
        remind(*answer.newer);
}

void Updater::remind(const Release &release)
{
    const auto show = [this, release] {
        const bool shows =
            m_parts.delegate.standardUserDriverShouldHandleShowingScheduledUpdate(release, false);
        m_parts.delegate.standardUserDriverWillHandleShowingUpdate(shows, release, {false});
        if (!shows)
            return;
        m_release = release;
        enter(Phase::Found);
        Q_EMIT presented(false);
    };
    if (m_parts.delegate.supportsGentleScheduledUpdateReminders())
        m_wait = m_parts.idleMonitor.whenIdle(m_schedule.idle, show);
    else
        show();
}

bool Updater::offersVersionHistory() const
{
    return m_parts.delegate.standardUserDriverShouldShowVersionHistory();
}

void Updater::showVersionHistory() const
{
    m_parts.delegate.standardUserDriverShowVersionHistory();
}

QUrl Updater::page() const
{
    if (!m_release)
        return {};
    const bool hasPage = !m_release->page.isEmpty() || !m_release->package;
    return hasPage ? m_release->page : m_release->package->url;
}

void Updater::openPage()
{
    m_opening = m_parts.webBrowser.open(page(), [this](bool opened) {
        if (opened)
            dismiss();
        else
            enter(Phase::NoBrowser);
    });
}

void Updater::skip()
{
    if (m_release)
        m_parts.preferences.set(skippedVersionKey, m_release->version);
    dismiss();
}

void Updater::dismiss()
{
    m_request.cancel();
    m_opening.cancel();
    enter(Phase::Quiet);
}

void Updater::enter(Phase phase)
{
    m_phase = phase;
    if (phase != Phase::Found && phase != Phase::NoBrowser)
        m_release.reset();
    Q_EMIT changed();
}

void Updater::fail(const QString &error)
{
    m_error = error;
    enter(Phase::Failed);
}

} // namespace nivora
