target_sources(portability PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/DetachedProcess.cpp)
