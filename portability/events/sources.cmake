target_sources(portability PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/AEDataModel.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Coercion.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Deadline.cpp
    ${CMAKE_CURRENT_LIST_DIR}/DescriptorStorage.cpp
    ${CMAKE_CURRENT_LIST_DIR}/EventImage.cpp
    ${CMAKE_CURRENT_LIST_DIR}/EventStorage.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ImageMemory.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ReceivedBlock.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SharedBlock.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Spin.cpp)
