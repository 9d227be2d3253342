# What programs on Linux need to be linked with the library: the links libdovrel.so.MAJOR and libdovrel.so, a
# pkg-config file and a CMake package. The links lead to the executable of the bundle, so a process has one copy of
# the library and one session, whether it is linked with it or loads the bundle.
set(executable "Contents/MacOS/Dovrel")

# In the build folder, for programs of this tree: the target dovrel::dovrel.
set(links "${PROJECT_BINARY_DIR}/lib")
file(MAKE_DIRECTORY "${links}")
add_custom_command(OUTPUT "${links}/${DOVREL_SONAME}"
    COMMAND "${CMAKE_COMMAND}" -E create_symlink "$<TARGET_FILE:dovrel>" "${links}/${DOVREL_SONAME}"
    DEPENDS dovrel VERBATIM)
add_custom_target(dovrel_linkable ALL DEPENDS "${links}/${DOVREL_SONAME}")
add_library(dovrel::dovrel SHARED IMPORTED GLOBAL)
set_target_properties(dovrel::dovrel PROPERTIES
    IMPORTED_LOCATION "${links}/${DOVREL_SONAME}" IMPORTED_SONAME ${DOVREL_SONAME} IMPORTED_NO_SYSTEM ON
    INTERFACE_INCLUDE_DIRECTORIES "${PROJECT_SOURCE_DIR}/include")
add_dependencies(dovrel::dovrel dovrel_linkable)

# In an installation.
dovrel_install_folders(library "${CMAKE_INSTALL_LIBDIR}")
dovrel_install_folders(development "${CMAKE_INSTALL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_LIBDIR}/cmake/dovrel")
# The links are relative, so that an installation can be moved as a whole.
set(staging "${PROJECT_BINARY_DIR}/install")
file(MAKE_DIRECTORY "${staging}")
cmake_path(ABSOLUTE_PATH DOVREL_INSTALL_FOLDER BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}" NORMALIZE OUTPUT_VARIABLE folder)
set(bundle "${folder}/Dovrel.bundle")
file(RELATIVE_PATH target "${CMAKE_INSTALL_FULL_LIBDIR}" "${bundle}/${executable}")
set(names libdovrel.so.${PROJECT_VERSION} ${DOVREL_SONAME} libdovrel.so)
foreach(name IN LISTS names)
    file(CREATE_LINK "${target}" "${staging}/${name}" SYMBOLIC)
    set(target ${name})
endforeach()
list(TRANSFORM names PREPEND "${staging}/")
list(POP_BACK names development_link)
install(FILES ${names} DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT library)
install(FILES "${development_link}" DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development)

# The paths in these files are relative as well.
file(RELATIVE_PATH DOVREL_PREFIX_FROM_PKGCONFIG "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" DOVREL_PREFIX_FROM_PKGCONFIG "${DOVREL_PREFIX_FROM_PKGCONFIG}")
file(RELATIVE_PATH DOVREL_BUNDLE_FROM_PREFIX "${CMAKE_INSTALL_PREFIX}" "${bundle}")
configure_file(cmake/package/dovrel.pc.in "${staging}/dovrel.pc" @ONLY)
install(FILES "${staging}/dovrel.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)

include(CMakePackageConfigHelpers)
set(package "${CMAKE_INSTALL_LIBDIR}/cmake/dovrel")
configure_package_config_file(cmake/package/dovrelConfig.cmake.in "${staging}/dovrelConfig.cmake"
    INSTALL_DESTINATION "${package}" PATH_VARS CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_INCLUDEDIR
    DOVREL_BUNDLE_FROM_PREFIX
    NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file("${staging}/dovrelConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${staging}/dovrelConfig.cmake" "${staging}/dovrelConfigVersion.cmake" DESTINATION "${package}"
    COMPONENT development)
