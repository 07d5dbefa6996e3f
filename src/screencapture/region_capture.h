#pragma once

#include "overlay_window.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

namespace nivora::screencapture {

// How the program ends, as its exit status.
enum class Outcome { Taken = 0, Cancelled = 1, Failed = 2 };

// Lets the user mark a region and writes its picture. Where screens come, go or
// change their size meanwhile, it begins anew with what they show then.
class RegionCapture : public QObject
{
    Q_OBJECT

public:
    // `scale`: a factor of the user's own, on top of the screens' density.
    RegionCapture(const QString &path, double scale);

    void begin();

Q_SIGNALS:
    void ended(Outcome outcome);

private:
    void watch(const QScreen *screen);
    void restart();
    void save(const QImage &picture);

    QString m_path;
    double m_scale;
    std::unique_ptr<OverlayWindow> m_overlay;
    QTimer m_settled; // since the screens last changed
};

} // namespace nivora::screencapture
