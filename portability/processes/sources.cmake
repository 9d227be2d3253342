target_sources(portability PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/ChildProcess.cpp
    ${CMAKE_CURRENT_LIST_DIR}/DetachedProcess.cpp
    ${CMAKE_CURRENT_LIST_DIR}/NSTask.mm
    ${CMAKE_CURRENT_LIST_DIR}/NewProcess.cpp
    ${CMAKE_CURRENT_LIST_DIR}/PreparedProgram.cpp)
