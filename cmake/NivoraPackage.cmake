# The Debian package: cmake --build <folder> --target package.

# What is built for another place cannot be packed for this one: programs, entries
# and modules know where they will lie.
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME nivora)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "${NIVORA_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "translate selected text in a panel beside it")
set(CPACK_PACKAGE_DESCRIPTION
"Select text in any program and tap Shift twice: a small panel opens beside the
selection, a language model's translation streams into it, and one key puts it
back in place. Made for people who read and write across Chinese, Japanese,
Korean and English all day.
.
It works on X11 desktops, and on Wayland desktops for programs that run under
Xwayland. Translations come from Nivora's cloud service or from an
OpenAI-compatible endpoint of the user's own.")
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION text)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${NIVORA_WEBSITE}")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

# Beside what programs and modules are linked to: those whom the cloud's certificate
# is vouched for by, gdbus, by which the desktop entry's actions are called, and what
# is loaded at first use.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "ca-certificates, libcld2-0, libglib2.0-bin, libmecab2")
# Without one of these a part of the product says that it is missing; README.md
# tells which.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "at-spi2-core, \
default-dbus-session-bus | dbus-session-bus, gnome-keyring | libkf5wallet-bin | keepassxc, \
mecab-ipadic-utf8, qt6-translations-l10n, speech-dispatcher, tesseract-ocr-chi-sim, tesseract-ocr-chi-tra, \
tesseract-ocr-eng, tesseract-ocr-jpn, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "fonts-noto-cjk, pocketsphinx-en-us, tesseract-ocr-jpn-vert")

include(CPack)
