#include "fuzz.h"

#include "account/auth_store.h"
#include "account/sign_in.h"
#include "core/auth_service.h"
#include "platform_memory/memory_http_client.h"
#include "platform_memory/memory_preferences.h"
#include "platform_memory/memory_secret_store.h"
#include "platform_memory/memory_web_browser.h"
#include "stores/keychain_store.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;

namespace {

struct Desk
{
    int argc = 1;
    char name[16] = "fuzz";
    char *argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    memory::MemoryHttpClient network;
};

} // namespace

// Any program may hand over any link. One link ends an attempt, and what it signs
// in with fits a header.
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static Desk desk;
    static const auto silence =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    static_cast<void>(silence);
    fuzz::Input input(data, size);
    memory::MemoryPreferences preferences;
    memory::MemorySecretStore secrets;
    memory::MemoryWebBrowser browser;
    KeychainStore keychain(secrets);
    AuthStore store(preferences, keychain);
    SignIn signIn(store, {desk.network, QUrl(u"https://cloud.invalid"_s)}, browser, {});

    signIn.openLink(QUrl(input.text()));
    fuzz::check(!store.isSignedIn(), "nobody is signed in without an attempt");

    int results = 0;
    const platform::Task attempt = signIn.signInWithGoogle([&](const auto &) { ++results; });
    while (!input.isEmpty()) {
        signIn.openLink(QUrl::fromEncoded(input.line(), QUrl::TolerantMode));
        QCoreApplication::processEvents();
    }
    fuzz::check(results <= 1, "an attempt ends once");
    if (const auto token = keychain.read(KeychainStore::sessionTokenAccount()))
        fuzz::check(isSessionToken(**token), "what is kept is a token");
    return 0;
}
