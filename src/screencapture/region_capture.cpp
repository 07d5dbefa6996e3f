#include "region_capture.h"

#include "picture_file.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <chrono>
#include <cstdio>

using namespace std::chrono_literals;

namespace nivora::screencapture {

namespace {

// A change of screens comes in several steps, and windows follow after it.
constexpr auto settleTime = 400ms;
constexpr double plainDensity = 96; // dots per inch

} // namespace

RegionCapture::RegionCapture(const QString &path, double scale)
    : m_path(path)
    , m_scale(std::max(1.0, scale * QGuiApplication::primaryScreen()->logicalDotsPerInch() /
                                plainDensity))
{
    m_settled.setSingleShot(true);
    connect(&m_settled, &QTimer::timeout, this, &RegionCapture::begin);
    for (const QScreen *screen : QGuiApplication::screens())
        watch(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](const QScreen *screen) {
        watch(screen);
        restart();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &RegionCapture::restart);
}

void RegionCapture::watch(const QScreen *screen)
{
    connect(screen, &QScreen::geometryChanged, this, &RegionCapture::restart);
}

void RegionCapture::restart()
{
    m_overlay.reset();
    m_settled.start(settleTime);
}

void RegionCapture::begin()
{
    const FrozenScreens screens = FrozenScreens::take();
    if (screens.picture.isNull()) {
        std::fputs("nivora-screencapture: the screen cannot be read\n", stderr);
        Q_EMIT ended(Outcome::Failed);
        return;
    }
    m_overlay = std::make_unique<OverlayWindow>(screens, m_scale);
    connect(m_overlay.get(), &OverlayWindow::chosen, this, &RegionCapture::save);
    connect(m_overlay.get(), &OverlayWindow::cancelled, this,
            [this] { Q_EMIT ended(Outcome::Cancelled); });
    connect(m_overlay.get(), &OverlayWindow::grabFailed, this, [this] {
        std::fputs("nivora-screencapture: another program, an open menu perhaps, keeps the mouse "
                   "or the keyboard\n",
                   stderr);
        Q_EMIT ended(Outcome::Failed);
    });
    m_overlay->begin();
}

void RegionCapture::save(const QImage &picture)
{
    if (writePicture(picture, m_path)) {
        Q_EMIT ended(Outcome::Taken);
        return;
    }
    std::fputs("nivora-screencapture: the picture cannot be written\n", stderr);
    Q_EMIT ended(Outcome::Failed);
}

} // namespace nivora::screencapture
