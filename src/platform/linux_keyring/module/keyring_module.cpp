// The entry of the module that the program loads to ask for its first secret.

#include "platform_linux_keyring/libsecret_keyring.h"

#include <QtGlobal>

extern "C" Q_DECL_EXPORT nivora::linuxdesktop::Keyring *nivoraMakeKeyring()
{
    return nivora::linuxdesktop::makeLibsecretKeyring().release();
}
