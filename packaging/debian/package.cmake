# SPDX-License-Identifier: MIT
# The Debian package, made by cpack -G DEB; packaging/make-deb builds the tree for it first.

set(debian ${CMAKE_CURRENT_LIST_DIR})
set(doc ${CMAKE_INSTALL_DATADIR}/doc/tessaly-player)

# What only a Debian package has is a component that a plain install leaves out.
find_program(GZIP gzip REQUIRED)
function(install_compressed source name)
    set(compressed ${CMAKE_CURRENT_BINARY_DIR}/debian/${name}.gz)
    add_custom_command(OUTPUT ${compressed}
        COMMAND ${GZIP} -9nc ${source} > ${compressed}
        DEPENDS ${source}
        VERBATIM)
    target_sources(debian_files PRIVATE ${compressed})
    install(FILES ${compressed} DESTINATION ${doc} COMPONENT debian EXCLUDE_FROM_ALL)
endfunction()
file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/debian)
add_custom_target(debian_files ALL)
install_compressed(${debian}/changelog changelog.Debian)
install_compressed(${debian}/../../CHANGELOG.md changelog)
install(FILES ${debian}/copyright DESTINATION ${doc} COMPONENT debian EXCLUDE_FROM_ALL)
install(FILES ${debian}/lintian-overrides RENAME tessaly-player
    DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT debian EXCLUDE_FROM_ALL)
set(CPACK_INSTALL_CMAKE_PROJECTS
    ${CMAKE_BINARY_DIR} ${PROJECT_NAME} ALL /
    ${CMAKE_BINARY_DIR} ${PROJECT_NAME} debian /)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${CPACK_PACKAGE_CONTACT})
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${TESSALY_SITE})
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Tessaly Player drives a lighting player that is built on an ESP32: it opens
the player's USB serial port, shakes hands with it and sends it one playback
frame after the other, with an audio or video file beside them if wanted. The
interface is in Simplified Chinese and English.
.
A simulated player is included.")

# Libraries are found by dpkg-shlibdeps. What Qt's media back end loads by name is not: before 6.5
# that is GStreamer, which crashes without the base plug-ins; the others add file formats. Later
# the back end is a library of Qt's own package, and brings all formats.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(recommended fonts-noto-cjk qt6-wayland qt6-translations-l10n)
if(Qt6_VERSION VERSION_LESS 6.5)
    set(CPACK_DEBIAN_PACKAGE_DEPENDS gstreamer1.0-plugins-base)
    list(PREPEND recommended gstreamer1.0-plugins-good gstreamer1.0-libav)
    set(CPACK_DEBIAN_PACKAGE_SUGGESTS gstreamer1.0-plugins-ugly)
endif()
list(JOIN recommended ", " CPACK_DEBIAN_PACKAGE_RECOMMENDS)
