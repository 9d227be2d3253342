# Debian packages of an installation with a configured root: cpack makes libdovrel1, libdovrel-dev, dovrel-server,
# dovrel-tools, python3-dovrel and dovrel-doc, and packages with the debug symbols of the programs.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME dovrel)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "The Dovrel developers <dovrel@lists.tessilor.example>")
# Otherwise CPack would write it before the descriptions of the packages, which have first lines of their own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_COMPONENTS_ALL library development server tools python documentation)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(about "Dovrel connects programs with a protected object server: it finds and
launches the server, carries each call to an object there and back, and
shows failures to the user.
.")

string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
find_program(GZIP gzip REQUIRED)

# dovrel_package(<component> <package> <section> <summary> <description>)
#
# Names the package of a component, and adds the documents that each Debian package must contain.
function(dovrel_package component package section summary description)
    string(TOUPPER ${component} name)
    set(CPACK_DEBIAN_${name}_PACKAGE_NAME ${package} PARENT_SCOPE)
    set(CPACK_DEBIAN_${name}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_COMPONENT_${name}_DESCRIPTION "${summary}\n${about}\n${description}" PARENT_SCOPE)
    set(doc "${PROJECT_BINARY_DIR}/packages/${package}")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/package/copyright.in" "${doc}/copyright" @ONLY)
    configure_file("${PROJECT_SOURCE_DIR}/cmake/package/changelog.in" "${doc}/changelog" @ONLY)
    execute_process(COMMAND "${GZIP}" --force --best --no-name "${doc}/changelog" COMMAND_ERROR_IS_FATAL ANY)
    install(FILES "${doc}/copyright" "${doc}/changelog.gz" DESTINATION share/doc/${package} COMPONENT ${component}
        EXCLUDE_FROM_ALL)
endfunction()

dovrel_package(library libdovrel${PROJECT_VERSION_MAJOR} libs "client library of a protected object server"
    "This package contains the library and the plug-in bundle, with texts, help
pages and alerts.")
dovrel_package(development libdovrel-dev libdevel "client library of a protected object server (headers)"
    "This package contains the headers for C and C++, also for programs that
load the library with dlopen.")
dovrel_package(server dovrel-server misc "development server for hosts of the Dovrel library"
    "This package contains a server for people who write such programs. It has
some classes, takes others from a text file, and misbehaves on request.")
dovrel_package(tools dovrel-tools utils "command-line tool of the Dovrel library"
    "This package contains the program dovrel. It examines an installation,
explains numbers in logs, decodes requests and replies, runs operations from
the shell, edits and checks settings and texts, and controls the development
server.")
dovrel_package(python python3-dovrel python "client library of a protected object server (Python)"
    "This package contains the module for Python.")
dovrel_package(documentation dovrel-doc doc "client library of a protected object server (documentation)"
    "This package contains the manual pages, a tutorial, a page of troubles, and
the pages of the interfaces for C and C++.")
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "python3 (>= 3.9), libdovrel${PROJECT_VERSION_MAJOR}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libdovrel${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_RECOMMENDS "dovrel-server")
# The tool loads the library, so its dependency cannot be found in the program.
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "libdovrel${PROJECT_VERSION_MAJOR}")

# Programs that are linked with the library depend on its package. The loader's table of libraries is renewed.
set(control "${PROJECT_BINARY_DIR}/packages/control")
file(WRITE "${control}/shlibs" "libdovrel ${PROJECT_VERSION_MAJOR} libdovrel${PROJECT_VERSION_MAJOR} "
    "(>= ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}.0)\n")
file(WRITE "${control}/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA "${control}/shlibs;${control}/triggers")

include(CPack)
