# The bundle that hosts load: ${PROJECT_BINARY_DIR}/Dovrel.bundle, complete with its property list and texts.
set(bundle_contents "${PROJECT_BINARY_DIR}/Dovrel.bundle/Contents")

# The functions are a source of the bundle's own, because nothing would fetch them out of the library.
add_library(dovrel MODULE Exports.cpp)
target_link_libraries(dovrel PRIVATE dovrel_client)
set_target_properties(dovrel PROPERTIES
    PREFIX "" SUFFIX "" OUTPUT_NAME Dovrel LIBRARY_OUTPUT_DIRECTORY "${bundle_contents}/MacOS")

# Exactly the functions of this list leave the bundle.
set(export_list "${CMAKE_CURRENT_SOURCE_DIR}/exports.txt")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${export_list}")
file(STRINGS "${export_list}" exported_functions)
if(APPLE)
    list(TRANSFORM exported_functions PREPEND "_")
    list(JOIN exported_functions "\n" exported_symbols)
    file(CONFIGURE OUTPUT exported.symbols CONTENT "@exported_symbols@\n" @ONLY)
    target_link_options(dovrel PRIVATE "-Wl,-exported_symbols_list,${CMAKE_CURRENT_BINARY_DIR}/exported.symbols")
else()
    list(JOIN exported_functions ";\n        " exported_symbols)
    file(CONFIGURE OUTPUT exported.map CONTENT "{\n    global:\n        @exported_symbols@;\n    local:\n        *;\n};\n" @ONLY)
    # Foundation cannot be unloaded once its classes are registered, so neither can the bundle that has it loaded.
    target_link_options(dovrel PRIVATE "-Wl,--version-script,${CMAKE_CURRENT_BINARY_DIR}/exported.map"
        -Wl,-soname,Dovrel -Wl,-z,defs -Wl,-z,nodelete)
    set_property(TARGET dovrel APPEND PROPERTY LINK_DEPENDS "${CMAKE_CURRENT_BINARY_DIR}/exported.map")
endif()

configure_file("${PROJECT_SOURCE_DIR}/resources/Info.plist.in" "${bundle_contents}/Info.plist" @ONLY)

set(texts "${PROJECT_SOURCE_DIR}/resources/MultiLanguageTexts.mls")
set(bundled_texts "${bundle_contents}/Resources/MultiLanguageTexts.mls")
add_custom_command(OUTPUT "${bundled_texts}"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${bundle_contents}/Resources"
    COMMAND "${CMAKE_COMMAND}" -E copy_if_different "${texts}" "${bundled_texts}"
    DEPENDS "${texts}" VERBATIM)
add_custom_target(dovrel_texts DEPENDS "${bundled_texts}")
add_dependencies(dovrel dovrel_texts)
