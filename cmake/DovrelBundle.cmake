# dovrel_bundle_contents(<target> <contents>)
#
# Fills the folder <contents> of a bundle with what is no code: the property list at once, the resources when <target>
# is built.
function(dovrel_bundle_contents target contents)
    set(source "${PROJECT_SOURCE_DIR}/resources")
    configure_file("${source}/Info.plist.in" "${contents}/Info.plist" @ONLY)

    file(GLOB_RECURSE resources CONFIGURE_DEPENDS RELATIVE "${source}" "${source}/*")
    list(FILTER resources EXCLUDE REGEX "(^|/)\\.[^/]*$|\\.in$")
    set(folder "${contents}/Resources")
    set(copies COMMAND "${CMAKE_COMMAND}" -E rm -rf "${folder}")
    foreach(resource IN LISTS resources)
        get_filename_component(subfolder "${folder}/${resource}" DIRECTORY)
        list(APPEND copies COMMAND "${CMAKE_COMMAND}" -E make_directory "${subfolder}"
            COMMAND "${CMAKE_COMMAND}" -E copy "${source}/${resource}" "${folder}/${resource}")
    endforeach()
    # All at once, so that none stays that is a resource no more.
    set(stamp "${CMAKE_CURRENT_BINARY_DIR}/${target}.stamp")
    list(TRANSFORM resources PREPEND "${source}/")
    add_custom_command(OUTPUT "${stamp}" ${copies} COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
        DEPENDS ${resources} VERBATIM)
    add_custom_target(${target} DEPENDS "${stamp}")
endfunction()
