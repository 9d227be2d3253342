# Where an installation has its files, and which folders it creates.
include(GNUInstallDirs)

# An installation is a system root: the prefix takes the place of "/", and POS_SYSTEM_ROOT leads to it. A distribution
# sets DOVREL_SYSTEM_ROOT, so that this folder contains everything below /Library, and hosts need no variable.
set(DOVREL_SYSTEM_ROOT "" CACHE STRING "Where hosts look without POS_SYSTEM_ROOT; relative to the prefix. Empty: \"/\"")
set(DOVREL_CONFIGURED_ROOT "")
if(DOVREL_SYSTEM_ROOT)
    if(DOVREL_TESTS)
        message(FATAL_ERROR "The tests expect the root \"/\". Use DOVREL_TESTS=OFF with DOVREL_SYSTEM_ROOT.")
    endif()
    cmake_path(ABSOLUTE_PATH DOVREL_SYSTEM_ROOT BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}" NORMALIZE
        OUTPUT_VARIABLE DOVREL_CONFIGURED_ROOT)
    string(REGEX REPLACE "(.)/$" "\\1" DOVREL_CONFIGURED_ROOT "${DOVREL_CONFIGURED_ROOT}")
endif()
cmake_path(APPEND DOVREL_SYSTEM_ROOT "Library/Application Support/Tessilor/pos" OUTPUT_VARIABLE DOVREL_INSTALL_FOLDER)

# dovrel_install_folders(<component> <folder>... [LOGS <folder>])
#
# Creates folders of an installation, from the top down. All users can enter them, whatever umask the installation has.
# Only the folder of the logs is open for writing, as the library itself makes it. The folders that were created are lines
# with a slash at their end in the manifest, so that uninstall removes these and no others.
function(dovrel_install_folders component)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "LOGS" "")
    string(MD5 number "${ARGN}")
    set(script "${PROJECT_BINARY_DIR}/install/folders-${component}-${number}.cmake")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/install-folders.cmake.in" "${script}" @ONLY)
    install(SCRIPT "${script}" COMPONENT ${component})
endfunction()

# Removes what the last installation of this build folder has created.
configure_file(cmake/uninstall.cmake.in uninstall.cmake @ONLY)
add_custom_target(uninstall COMMAND "${CMAKE_COMMAND}" -P "${PROJECT_BINARY_DIR}/uninstall.cmake" VERBATIM)
