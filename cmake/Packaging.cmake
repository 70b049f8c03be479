# SPDX-License-Identifier: MIT
# What is installed, and the packages that cpack makes of it. Only for this tree on its own: a
# project that adds it as a part installs what it likes.

if(NOT PROJECT_IS_TOP_LEVEL)
    return()
endif()

# The name by which software centres, macOS and Flatpak know the application.
set(TESSALY_ID com.corvessa.tessalyplayer)
set(TESSALY_VENDOR "Corvessa Electronic CO.")
set(TESSALY_SITE https://corvessa.example/tessaly-player CACHE STRING
    "Address under which this tree (docs/images/ for one) is published")
set(TESSALY_CONTACT tessaly-player@corvessa.example CACHE STRING
    "Mail address of those who look after the packages")

include(GNUInstallDirs)
add_subdirectory(packaging)

set(CPACK_PACKAGE_NAME tessaly-player)
set(CPACK_PACKAGE_VENDOR ${TESSALY_VENDOR})
set(CPACK_PACKAGE_CONTACT "${TESSALY_VENDOR} <${TESSALY_CONTACT}>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGE_INSTALL_DIRECTORY "Tessaly Player")
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_CURRENT_LIST_DIR}/../LICENSE)
set(CPACK_VERBATIM_VARIABLES ON)
if(APPLE)
    set(CPACK_GENERATOR DragNDrop)
elseif(WIN32)
    set(CPACK_GENERATOR ZIP)
else()
    include(${CMAKE_CURRENT_LIST_DIR}/../packaging/debian/package.cmake)
endif()
include(CPack)
