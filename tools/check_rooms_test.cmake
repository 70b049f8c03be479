# SPDX-License-Identifier: MIT
# Shows that check_rooms.cmake lets what it should through and complains about the rest, on small
# trees and link lists made up in WORK:
#
#   cmake -DWORK=<scratch directory> -P check_rooms_test.cmake
cmake_minimum_required(VERSION 3.22)

set(check ${CMAKE_CURRENT_LIST_DIR}/check_rooms.cmake)
set(rooms i18n process protocol serial media widgets mainwindow app simulator)

# Runs the check with one argument; it has to say `complaint` and fail, or pass if that is "".
function(expect argument complaint)
    execute_process(COMMAND ${CMAKE_COMMAND} ${argument} -P ${check}
        RESULT_VARIABLE result ERROR_VARIABLE said)
    if(complaint STREQUAL "")
        if(NOT result EQUAL 0)
            message(SEND_ERROR "refused, but nothing was wrong:\n${said}")
        endif()
        return()
    endif()
    string(FIND "${said}" "${complaint}\n" position)
    if(result EQUAL 0 OR position EQUAL -1)
        message(SEND_ERROR "expected: ${complaint}\ngot: ${said}")
    endif()
endfunction()

# A tree whose rooms hold one harmless file each, and `text` in addition in `file`.
function(expect_of_source file text complaint)
    file(REMOVE_RECURSE ${WORK}/tree)
    foreach(room IN LISTS rooms)
        file(WRITE ${WORK}/tree/${room}/harmless.h "#include <QString>\n")
    endforeach()
    file(WRITE ${WORK}/tree/${file} "// first line\n${text}\n")
    expect(-DROOT=${WORK}/tree "${complaint}")
endfunction()

function(expect_of_link line complaint)
    file(WRITE ${WORK}/links "i18n qx_i18n: Qt6::Core\nserial qx_serial: Qt6::Core\n${line}\n")
    expect(-DLINKS=${WORK}/links "${complaint}")
endfunction()

expect_of_source(widgets/a.h "#include \"protocol/protocol.h\"" "")
expect_of_source(widgets/a.h "#include \"widgets/harmless.h\"" "")
expect_of_source(widgets/a.h "// #include \"serial/harmless.h\"" "")
expect_of_source(widgets/a.cpp "#include \"a.moc\"" "")
expect_of_source(protocol/a.h "#include \"mainwindow/harmless.h\"" # upwards
    "protocol/a.h: protocol may not include mainwindow/harmless.h")
expect_of_source(serial/a.cpp "#include \"widgets/harmless.h\"" # sideways
    "serial/a.cpp: serial may not include widgets/harmless.h")
expect_of_source(simulator/a.h "#include \"process/harmless.h\"" "")
expect_of_source(simulator/a.h "#include \"protocol/protocol.h\"" # shares no code with the program
    "simulator/a.h: simulator may not include protocol/protocol.h")
expect_of_source(i18n/a.h "#include <serial/harmless.h>"
    "i18n/a.h: i18n may not include serial/harmless.h")
expect_of_source(i18n/deeper/a.h "  #  include \"serial/harmless.h\""
    "i18n/deeper/a.h: i18n may not include serial/harmless.h")
expect_of_source(serial/a.h "#include \"../widgets/harmless.h\""
    "serial/a.h: ../widgets/harmless.h does not begin with a room")
expect_of_source(app/a.h "#include \"tests/support/a.h\""
    "app/a.h: tests/support/a.h does not begin with a room")
expect(-DROOT=${WORK}/nowhere "i18n: there are no sources")

expect_of_link("widgets qx_widgets: qx_i18n Qt6::Core Qt6::Gui Qt6::Widgets" "")
expect_of_link("serial qx_more: qx_serial Qt6::SerialPort" "")
expect_of_link("widgets qx_widgets: Qt6::Core qx_serial" "qx_widgets: widgets may not link qx_serial")
expect_of_link("widgets qx_widgets: Qt6::Core Qt6::SerialPort"
    "qx_widgets: widgets may not link Qt6::SerialPort")
expect_of_link("serial qx_more: Qt::Widgets" "qx_more: serial may not link Qt::Widgets")
expect_of_link("serial qx_more: z" "qx_more: serial may not link z")
expect_of_link("cellar qx_cellar:" "qx_cellar: cellar is not in the table")
