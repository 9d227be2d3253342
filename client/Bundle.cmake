# The bundle that hosts load: ${DOVREL_BUNDLE}, complete with its property list, texts and help pages.
set(bundle_contents "${DOVREL_BUNDLE}/Contents")

# The exported functions are compiled into the bundle itself. No code calls them, so if they came from a static library, the
# linker would omit them.
add_library(dovrel MODULE Exports.cpp)
target_link_libraries(dovrel PRIVATE dovrel_client)
set_target_properties(dovrel PROPERTIES
    PREFIX "" SUFFIX "" OUTPUT_NAME Dovrel LIBRARY_OUTPUT_DIRECTORY "${bundle_contents}/MacOS")

# The bundle exports exactly the functions in this list.
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
    set(symbol_version DOVREL_${PROJECT_VERSION_MAJOR})
    file(CONFIGURE OUTPUT exported.map
        CONTENT "@symbol_version@ {\n    global:\n        @exported_symbols@;\n    local:\n        *;\n};\n" @ONLY)
    # nodelete: the first alert loads Foundation, which cannot be unloaded once its classes are registered. So the bundle
    # cannot be unloaded either. It is marked from the start, so that a host need not know whether an alert was shown.
    target_link_options(dovrel PRIVATE "-Wl,--version-script,${CMAKE_CURRENT_BINARY_DIR}/exported.map"
        -Wl,-soname,${DOVREL_SONAME} -Wl,-z,defs -Wl,-z,nodelete)
    set_property(TARGET dovrel APPEND PROPERTY LINK_DEPENDS "${CMAKE_CURRENT_BINARY_DIR}/exported.map")
endif()

dovrel_bundle_contents(dovrel_resources "${bundle_contents}")
add_dependencies(dovrel dovrel_resources)

# On some systems a program next to the library shows the alerts.
if(TARGET dovrel-alert)
    add_dependencies(dovrel dovrel-alert)
endif()
