# dovrel_folder_headers(<target>)
#
# Headers are included by their path from the top of the tree ("serialization/CPPByteArray.h"). A symbolic
# link in the build folder shows only the calling folder under that path. So only targets that depend on a
# folder find its headers.
function(dovrel_folder_headers target)
    file(RELATIVE_PATH folder "${PROJECT_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
    set(root "${PROJECT_BINARY_DIR}/headers/${target}")
    get_filename_component(parent "${root}/${folder}" DIRECTORY)
    file(MAKE_DIRECTORY "${parent}")
    file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${root}/${folder}" SYMBOLIC)
    target_include_directories(${target} PUBLIC "${root}")
endfunction()

# dovrel_folder(<target> SOURCES <file>... [DEPENDS <target>...])
#
# Creates the static library of the calling folder. The global property DOVREL_LIBRARY_SOURCES lists the
# sources of all folders, for the build for another system.
function(dovrel_folder target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;DEPENDS")
    add_library(${target} STATIC ${arg_SOURCES})
    list(TRANSFORM arg_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/" OUTPUT_VARIABLE sources)
    set_property(GLOBAL APPEND PROPERTY DOVREL_LIBRARY_SOURCES ${sources})
    dovrel_folder_headers(${target})
    target_link_libraries(${target} PUBLIC ${arg_DEPENDS})
endfunction()
