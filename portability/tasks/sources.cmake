target_sources(portability PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/CallQueue.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CriticalRegions.cpp
    ${CMAKE_CURRENT_LIST_DIR}/EventGroups.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MainRunLoop.mm
    ${CMAKE_CURRENT_LIST_DIR}/MainThread.cpp
    ${CMAKE_CURRENT_LIST_DIR}/RemoteCall.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Semaphores.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Tasks.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Timer.cpp
    ${CMAKE_CURRENT_LIST_DIR}/WaitQueue.cpp)
