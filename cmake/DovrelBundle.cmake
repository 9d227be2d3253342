# dovrel_bundle_contents(<target> <contents>)
#
# Fills the folder <contents> of a bundle with what is no code: the property list at once, the resources when <target>
# is built.
function(dovrel_bundle_contents target contents)
    set(source "${PROJECT_SOURCE_DIR}/resources")
    configure_file("${source}/Info.plist.in" "${contents}/Info.plist" @ONLY)

    file(GLOB_RECURSE resources CONFIGURE_DEPENDS RELATIVE "${source}" "${source}/*")
    list(FILTER resources EXCLUDE REGEX "(^|/)\\.[^/]*$|\\.in$")
    set(copies "")
    foreach(resource IN LISTS resources)
        set(copy "${contents}/Resources/${resource}")
        get_filename_component(folder "${copy}" DIRECTORY)
        add_custom_command(OUTPUT "${copy}"
            COMMAND "${CMAKE_COMMAND}" -E make_directory "${folder}"
            COMMAND "${CMAKE_COMMAND}" -E copy_if_different "${source}/${resource}" "${copy}"
            DEPENDS "${source}/${resource}" VERBATIM)
        list(APPEND copies "${copy}")
    endforeach()
    add_custom_target(${target} DEPENDS ${copies})
endfunction()
