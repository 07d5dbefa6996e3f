#include "fuzz.h"

#include "platform_linux/json_preferences.h"
#include "platform_memory/memory_secret_store.h"
#include "stores/settings_store.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cmath>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;

namespace {

struct Desk
{
    int argc = 1;
    char name[16] = "fuzz";
    char *argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    QTemporaryDir folder{u"/dev/shm/nivora-fuzz-XXXXXX"_s};
    QString path = folder.filePath(u"defaults.json"_s);
};

} // namespace

// A settings file of any content is survived, and written to as a valid one.
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static Desk desk;
    static const bool isQuiet = [] {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        return true;
    }();
    static_cast<void>(isQuiet);
    {
        QFile file(desk.path);
        fuzz::check(file.open(QIODevice::WriteOnly), "the file can be written");
        file.write(fuzz::Input(data, size).rest());
    }
    memory::MemorySecretStore secrets;
    KeychainStore keychain(secrets);
    keychain.write(KeychainStore::sessionTokenAccount(), u"session"_s);
    const QUrl cloud(u"https://cloud.invalid"_s);
    {
        linuxdesktop::JsonPreferences preferences(desk.path);
        SettingsStore settings(preferences, keychain, cloud);
        const TranslationConfig config = settings.config();
        fuzz::check(config.requestTimeout.count() > 0, "a request has a time-out");
        fuzz::check(std::isfinite(settings.doubleTapThresholdMs.value()),
                    "the threshold is a number");
        fuzz::check(std::isfinite(settings.speechRate.value()), "the rate is a number");
        fuzz::check(config.cloud || !(*config.apiToken).contains("session"),
                    "the session's token goes to the cloud alone");
        settings.modelName.set(settings.modelName.value() + u"x"_s);
    }
    linuxdesktop::JsonPreferences again(desk.path);
    fuzz::check(again.value(u"modelName"_s).has_value(), "a change is kept");
    // The kept-aside copies of broken files would fill the memory.
    for (const QFileInfo &each : QDir(desk.folder.path()).entryInfoList(QDir::Files)) {
        if (each.fileName().contains(".corrupt-"_L1))
            QFile::remove(each.filePath());
    }
    return 0;
}
