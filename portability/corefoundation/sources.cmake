target_sources(portability PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/BinaryPropertyList.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Bundle.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CFBase.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CFBundle.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CFCollections.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CFConstants.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CFPreferences.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CFPropertyList.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CFString.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CFURL.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Languages.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Object.cpp
    ${CMAKE_CURRENT_LIST_DIR}/OldStylePropertyList.cpp
    ${CMAKE_CURRENT_LIST_DIR}/PackedVersion.cpp
    ${CMAKE_CURRENT_LIST_DIR}/PropertyList.cpp
    ${CMAKE_CURRENT_LIST_DIR}/TextEncoding.cpp
    ${CMAKE_CURRENT_LIST_DIR}/XmlPropertyList.cpp)
