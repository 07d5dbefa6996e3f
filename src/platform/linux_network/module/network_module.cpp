// The entry of the module that the program loads for its first request.

#include "platform_linux_network/qt_http_client.h"

#include <QtGlobal>

extern "C" Q_DECL_EXPORT nivora::platform::HttpClient *nivoraMakeHttpClient()
{
    return new nivora::linuxdesktop::QtHttpClient;
}
