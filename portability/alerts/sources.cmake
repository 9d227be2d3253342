# The messages between the host and the alert helper, for both of them.
find_package(nlohmann_json REQUIRED)
add_library(portability_alert_messages STATIC
    ${CMAKE_CURRENT_LIST_DIR}/AlertLines.cpp
    ${CMAKE_CURRENT_LIST_DIR}/AlertMessages.cpp)
target_include_directories(portability_alert_messages PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
target_link_libraries(portability_alert_messages PRIVATE nlohmann_json::nlohmann_json)
target_link_libraries(portability PRIVATE portability_alert_messages)

# What the library uses of AppKit.
target_sources(portability PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/AlertConversation.cpp
    ${CMAKE_CURRENT_LIST_DIR}/AlertHelper.cpp
    ${CMAKE_CURRENT_LIST_DIR}/NSAlert.mm
    ${CMAKE_CURRENT_LIST_DIR}/NSApplicationLoad.mm)

add_subdirectory("${CMAKE_CURRENT_LIST_DIR}/helper" alerts/helper)
