target_sources(portability PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/AlertClosing.mm
    ${CMAKE_CURRENT_LIST_DIR}/HostState.mm
    ${CMAKE_CURRENT_LIST_DIR}/ReadableHostTexts.cpp
    ${CMAKE_CURRENT_LIST_DIR}/NSApplicationLoad.mm
    ${CMAKE_CURRENT_LIST_DIR}/WindowServer.cpp)

# The library of the window classes is opened at run time, by the name that it has where no headers are installed.
find_library(GNUSTEP_GUI_LIBRARY gnustep-gui REQUIRED)
execute_process(COMMAND "${CMAKE_OBJDUMP}" -p "${GNUSTEP_GUI_LIBRARY}" OUTPUT_VARIABLE gui_headers)
if(NOT gui_headers MATCHES "SONAME +([^ \n]+)")
    message(FATAL_ERROR "${GNUSTEP_GUI_LIBRARY} does not tell its name")
endif()
set_property(SOURCE ${CMAKE_CURRENT_LIST_DIR}/NSApplicationLoad.mm
    APPEND PROPERTY COMPILE_DEFINITIONS PORTABILITY_WINDOW_LIBRARY="${CMAKE_MATCH_1}")
