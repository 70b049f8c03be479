# SPDX-License-Identifier: MIT
# How every target of ours is built: one static library per room, the same
# language level and warnings everywhere, and a record of what each library
# links to, which tools/check_rooms.cmake compares with its table.

get_filename_component(QX_ROOT ${CMAKE_CURRENT_LIST_DIR}/.. ABSOLUTE)

add_library(qx_build INTERFACE)
target_compile_features(qx_build INTERFACE cxx_std_20)
target_include_directories(qx_build INTERFACE ${QX_ROOT})
target_compile_definitions(qx_build INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_FOREACH
    TESSALY_VERSION="${PROJECT_VERSION}")

# For our own code only: nothing that links a room inherits them. They are errors in the developers'
# presets and in CI, by CMAKE_COMPILE_WARNING_AS_ERROR, and not in the build of a user, whose
# compiler may be one that nobody has met yet.
add_library(qx_warnings INTERFACE)
if(MSVC)
    target_compile_options(qx_warnings INTERFACE /W4 /utf-8 /permissive-)
else()
    target_compile_options(qx_warnings INTERFACE
        -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion
        -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast -Wcast-align
        -Wimplicit-fallthrough -Wextra-semi -Wundef
        $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local>)
endif()

# qx_target(<target>): the compile settings that all of our targets share.
function(qx_target target)
    target_link_libraries(${target} PRIVATE qx_build qx_warnings)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
endfunction()

# qx_room(<target> SOURCES <files> LINKS <targets>): the library of one room.
function(qx_room target)
    cmake_parse_arguments(PARSE_ARGV 1 room "" "" "SOURCES;LINKS")
    add_library(${target} STATIC ${room_SOURCES})
    qx_target(${target})
    target_include_directories(${target} PUBLIC ${QX_ROOT})
    target_compile_features(${target} PUBLIC cxx_std_20)
    target_link_libraries(${target} PUBLIC ${room_LINKS})
    set_property(GLOBAL APPEND PROPERTY QX_ROOMS ${target})
endfunction()
