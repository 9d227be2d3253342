# dovrel_bundle_contents(<target> <contents>)
#
# Fills the folder <contents> of a bundle with everything except code. The property list is written at
# configuration time, the resources when <target> is built.
function(dovrel_bundle_contents target contents)
    set(source "${PROJECT_SOURCE_DIR}/resources")
    configure_file("${source}/Info.plist.in" "${contents}/Info.plist" @ONLY)

    file(GLOB_RECURSE resources CONFIGURE_DEPENDS RELATIVE "${source}" "${source}/*")
    list(FILTER resources EXCLUDE REGEX "(^|/)\\.[^/]*$|\\.in$|(^|/)README\\.md$")
    set(folder "${contents}/Resources")
    set(copies COMMAND "${CMAKE_COMMAND}" -E rm -rf "${folder}")
    foreach(resource IN LISTS resources)
        get_filename_component(subfolder "${folder}/${resource}" DIRECTORY)
        list(APPEND copies COMMAND "${CMAKE_COMMAND}" -E make_directory "${subfolder}"
            COMMAND "${CMAKE_COMMAND}" -E copy "${source}/${resource}" "${folder}/${resource}")
    endforeach()
    # All resources are copied together, so that the folder contains no files that are no longer resources.
    set(stamp "${CMAKE_CURRENT_BINARY_DIR}/${target}.stamp")
    list(TRANSFORM resources PREPEND "${source}/")
    add_custom_command(OUTPUT "${stamp}" ${copies} COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
        DEPENDS ${resources} VERBATIM)
    add_custom_target(${target} DEPENDS "${stamp}")
endfunction()

# dovrel_install_bundle(<bundle> <component>)
#
# Installs a bundle from the build folder beside the other bundles. All users can read its content and run
# its programs, independent of the umask during the build and the installation. (Outside macOS libraries are
# not executable.)
function(dovrel_install_bundle bundle component)
    set(readable OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
    set(executable ${readable} OWNER_EXECUTE GROUP_EXECUTE WORLD_EXECUTE)
    set(programs "/Contents/MacOS/[^/]*$")
    if(NOT APPLE)
        set(programs "/Contents/MacOS/(Merrowd|dovrel-alert)$")
    endif()
    install(DIRECTORY "${bundle}" DESTINATION "${DOVREL_INSTALL_FOLDER}" COMPONENT ${component}
        FILE_PERMISSIONS ${readable} DIRECTORY_PERMISSIONS ${executable}
        REGEX "${programs}" PERMISSIONS ${executable})
endfunction()
