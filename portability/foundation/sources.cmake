target_sources(portability PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/ApplicationBundle.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CatalogInfo.cpp
    ${CMAKE_CURRENT_LIST_DIR}/FileContent.cpp
    ${CMAKE_CURRENT_LIST_DIR}/FileErrors.cpp
    ${CMAKE_CURRENT_LIST_DIR}/FileNames.cpp
    ${CMAKE_CURRENT_LIST_DIR}/FileReference.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Files.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Folders.cpp
    ${CMAKE_CURRENT_LIST_DIR}/HomeFolder.cpp
    ${CMAKE_CURRENT_LIST_DIR}/LSOpen.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Libc.cpp
    ${CMAKE_CURRENT_LIST_DIR}/NSLog.mm
    ${CMAKE_CURRENT_LIST_DIR}/Paths.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ProcessTable.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Processes.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Sysctl.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SystemRoot.cpp)
