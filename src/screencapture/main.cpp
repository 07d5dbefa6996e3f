// Takes a picture of a part of the screen that the user marks:
//
//   nivora-screencapture -i -x PATH
//
// -i lets the user mark a region, without which nothing else is offered; -x, for
// no sound, changes nothing, since none is ever made. Exit status: 0 there is a
// PNG file at PATH, readable by its owner alone; 1 the user cancelled; 2 it could
// not be done, which standard error explains. There is a file for status 0 only.

#include "picture_file.h"
#include "region_capture.h"

#include "app/interface_language.h"
#include "app/translations.h"

#include "platform_linux/json_preferences.h"
#include "platform_linux/portal_screenshot.h"

#include <QGuiApplication>

#include <cstdio>
#include <optional>
#include <sys/resource.h>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using namespace nivora::screencapture;

namespace {

std::optional<QString> pathFrom(const QStringList &arguments)
{
    if (arguments.size() < 3 || arguments.last().startsWith(u'-'))
        return std::nullopt;
    const QStringList options = arguments.sliced(1, arguments.size() - 2);
    for (const QString &option : options) {
        if (option != u"-i" && option != u"-x")
            return std::nullopt;
    }
    if (!options.contains(u"-i"_s))
        return std::nullopt;
    return arguments.last();
}

// The user's own factor. Everything here counts in pixels, so the library shall
// not scale.
double takeScaleFactor()
{
    bool isNumber = false;
    const double factor = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble(&isNumber);
    for (const char *name : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_USE_PHYSICAL_DPI"})
        qunsetenv(name);
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    return isNumber && factor > 0 ? factor : 1;
}

int captureRegion(int argc, char *argv[], const QString &path)
{
    qputenv("QT_QPA_PLATFORM", "xcb");
    const double scale = takeScaleFactor();
    QGuiApplication application(argc, argv);
    // A movement that is left out for a later one may be the one before a key.
    // Set only now: the application switches it on.
    QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
    const linuxdesktop::JsonPreferences preferences(linuxdesktop::JsonPreferences::defaultPath());
    const Translations translations(interfaceLanguage(userLanguages(preferences)));
    RegionCapture capture(path, scale);
    QObject::connect(
        &capture, &RegionCapture::ended, &application,
        [](Outcome outcome) { QCoreApplication::exit(int(outcome)); }, Qt::QueuedConnection);
    capture.begin();
    return QGuiApplication::exec();
}

int captureByPortal(int argc, char *argv[], const QString &path)
{
    QCoreApplication application(argc, argv);
    const platform::Task task =
        linuxdesktop::takePortalScreenshot([&](const linuxdesktop::PortalScreenshot &shot) {
            using Result = linuxdesktop::PortalScreenshot::Result;
            if (shot.result == Result::Taken && movePicture(shot.file, path))
                return QCoreApplication::exit(int(Outcome::Taken));
            if (shot.result == Result::Cancelled)
                return QCoreApplication::exit(int(Outcome::Cancelled));
            std::fputs("nivora-screencapture: the desktop's portal gave no picture\n", stderr);
            QCoreApplication::exit(int(Outcome::Failed));
        });
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    // What was on the screen shall not lie about.
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const auto path = pathFrom(arguments);
    if (!path) {
        std::fputs("usage: nivora-screencapture -i [-x] PATH\n", stderr);
        return int(Outcome::Failed);
    }
    return linuxdesktop::x11ShowsAllWindows() ? captureRegion(argc, argv, *path)
                                              : captureByPortal(argc, argv, *path);
}
