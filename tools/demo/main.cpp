#include "demo.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Does the product's main job on a desktop of its own and checks every step."_s);
    parser.addHelpOption();
    parser.addOption({u"screenshot"_s, u"Where to save the screen with the open panel."_s,
                      u"file"_s, u"panel.png"_s});
    parser.process(application);

    const QUrl cloud(QStringLiteral(NIVORA_CLOUD_ENDPOINT));
    if (cloud.host() != "localhost"_L1 || cloud.port() <= 0) {
        std::fprintf(stderr,
                     "This build's cloud is %s. The demonstration wants a build for a port of "
                     "localhost, as scripts/run makes it.\n",
                     NIVORA_CLOUD_ENDPOINT);
        return 2;
    }
    const bool held =
        nivora::Demo({.cloud = cloud, .screenshot = parser.value(u"screenshot"_s)}).run();
    std::puts(held ? "All of it held." : "Not all of it held.");
    return held ? 0 : 1;
}
