# What an installation holds beside programs and modules, which their own folders
# install: the entries by which desktops, buses, software centres and readers of
# manuals find the program.

find_program(NIVORA_GZIP gzip REQUIRED)

# Both follow SOURCE_DATE_EPOCH, so that a build can be repeated to the byte.
string(TIMESTAMP NIVORA_DATE "%Y-%m-%d" UTC)
string(TIMESTAMP NIVORA_TIME "%a, %d %b %Y %H:%M:%S +0000" UTC)

# How programs that are no desktop reach the one that runs; it needs GLib's tools.
string(JOIN " " NIVORA_ACTIVATE_ACTION gdbus call --session --dest app.nivora
    --object-path /app/nivora --method org.freedesktop.Application.ActivateAction)

set(resources "${CMAKE_SOURCE_DIR}/resources")
set(staged "${CMAKE_BINARY_DIR}/installation")
foreach(file app.nivora.desktop app.nivora.service app.nivora.metainfo.xml nivora.1)
    configure_file("${resources}/${file}.in" "${staged}/${file}" @ONLY)
endforeach()

# The change log in Debian's format. Its newest section is the one of this version.
file(READ "${CMAKE_SOURCE_DIR}/CHANGELOG.md" changes)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/CHANGELOG.md")
string(REGEX REPLACE "^# Changelog\n+## [^\n]*\n+" "" changes "${changes}")
string(REGEX REPLACE "\n## .*" "" changes "${changes}")
string(STRIP "${changes}" changes)
string(REPLACE "\n" "\n  " changes "\n${changes}")
string(REPLACE "\n  - " "\n\n  * " changes "${changes}")
file(CONFIGURE OUTPUT "${staged}/changes" CONTENT "${changes}" @ONLY)
# Debian wants lines of at most 80 characters.
execute_process(COMMAND fmt --tagged-paragraph --width=78 "${staged}/changes"
    OUTPUT_VARIABLE changes COMMAND_ERROR_IS_FATAL ANY)
string(STRIP "${changes}" changes)
file(CONFIGURE OUTPUT "${staged}/changelog" @ONLY CONTENT
"nivora (${PROJECT_VERSION}) stable; urgency=medium

  ${changes}

 -- ${NIVORA_MAINTAINER}  ${NIVORA_TIME}
")

set(made)
foreach(file nivora.1 changelog)
    add_custom_command(OUTPUT "${staged}/${file}.gz"
        COMMAND "${NIVORA_GZIP}" -9nc "${staged}/${file}" > "${staged}/${file}.gz"
        DEPENDS "${staged}/${file}"
        VERBATIM)
    list(APPEND made "${staged}/${file}.gz")
endforeach()

# Every program has an icon of 48 pixels for the themes that draw no other, and not
# every desktop draws SVG.
foreach(side 16 22 24 32 48 64 128 256)
    set(png "${staged}/${side}.png")
    add_custom_command(OUTPUT "${png}"
        COMMAND pngicon "${resources}/app.nivora.svg" ${side} "${png}"
        DEPENDS pngicon "${resources}/app.nivora.svg"
        VERBATIM)
    list(APPEND made "${png}")
    install(FILES "${png}" RENAME app.nivora.png
        DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/${side}x${side}/apps")
endforeach()
add_custom_target(nivora_installation ALL DEPENDS ${made})

install(FILES "${resources}/app.nivora.svg"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")
install(FILES "${resources}/app.nivora-symbolic.svg"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/symbolic/apps")
install(FILES "${staged}/app.nivora.desktop" DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES "${staged}/app.nivora.service"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/services")
install(FILES "${staged}/app.nivora.metainfo.xml" DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
install(FILES "${staged}/nivora.1.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
install(FILES "${staged}/changelog.gz" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/nivora")
install(FILES "${CMAKE_SOURCE_DIR}/LICENSE" RENAME copyright DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/nivora")

# Tells the desktop who opens nivora: links. Packages leave that to their manager.
install(CODE "
    find_program(NIVORA_DATABASE_UPDATER update-desktop-database)
    if(NIVORA_DATABASE_UPDATER AND NOT DEFINED ENV{DESTDIR})
        execute_process(COMMAND \"\${NIVORA_DATABASE_UPDATER}\"
            \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}/applications\")
    endif()")
