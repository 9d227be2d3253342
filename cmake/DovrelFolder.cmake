# dovrel_folder_headers(<target>)
#
# Headers are included by their path from the top of the tree ("serialization/CPPByteArray.h"). A link in the build folder
# shows just the folder that calls this under that path, so that a header is found only by targets that depend on its folder.
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
# Makes the static library of the folder that calls it. The sources of all folders are listed in the global property
# DOVREL_LIBRARY_SOURCES, for the build for another system.
function(dovrel_folder target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;DEPENDS")
    add_library(${target} STATIC ${arg_SOURCES})
    list(TRANSFORM arg_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/" OUTPUT_VARIABLE sources)
    set_property(GLOBAL APPEND PROPERTY DOVREL_LIBRARY_SOURCES ${sources})
    dovrel_folder_headers(${target})
    target_link_libraries(${target} PUBLIC ${arg_DEPENDS})
endfunction()
