# The documentation of an installation: the manual pages (target manual), the API pages (target api) and the documents.
# Both targets are part of the build if their tools are installed. The library does not need them.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
find_program(GO_MD2MAN go-md2man)
find_program(DOXYGEN doxygen)

# Says what is not made because a tool is missing.
function(dovrel_missing_tool tool pages)
    message(STATUS "The ${pages} are not made, because ${tool} is not installed (scripts/setup installs it)")
endfunction()

set(documentation "${PROJECT_BINARY_DIR}/documentation")
set(manual "${PROJECT_SOURCE_DIR}/scripts/manual-pages")
file(GLOB scripts CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/scripts/manual/*.py")
file(GLOB_RECURSE headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/include/*.h*")
file(GLOB documents CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/*.md" "${PROJECT_SOURCE_DIR}/docs/manual/*.md")
string(TIMESTAMP date "%Y-%m-%d" UTC)
# Pages of packages are compressed.
set(compressed "")
if(DOVREL_CONFIGURED_ROOT)
    set(compressed --gzip)
endif()
set(pages "${Python3_EXECUTABLE}" -B "${manual}" --date ${date})
if(GO_MD2MAN)
    add_custom_command(OUTPUT "${documentation}/manual.made"
        COMMAND ${pages} ${compressed} --converter "${GO_MD2MAN}" --tool "$<TARGET_FILE:dovrel_tool>" "${documentation}/man"
        COMMAND "${CMAKE_COMMAND}" -E touch "${documentation}/manual.made"
        DEPENDS dovrel_tool "${manual}" ${scripts} ${headers} ${documents} COMMENT "Making the manual pages" VERBATIM)
    add_custom_target(manual ALL DEPENDS "${documentation}/manual.made")
else()
    dovrel_missing_tool(go-md2man "manual pages")
endif()

configure_file("${PROJECT_SOURCE_DIR}/docs/Doxyfile.in" "${documentation}/Doxyfile" @ONLY)
if(DOXYGEN)
    add_custom_command(OUTPUT "${documentation}/api.made"
        COMMAND ${pages} --markdown "${documentation}/markdown"
        COMMAND "${DOXYGEN}" -q "${documentation}/Doxyfile"
        COMMAND "${CMAKE_COMMAND}" -E touch "${documentation}/api.made"
        DEPENDS "${manual}" ${scripts} "${documentation}/Doxyfile" ${headers} ${documents} COMMENT "Making the API pages" VERBATIM)
    add_custom_target(api ALL DEPENDS "${documentation}/api.made")
else()
    dovrel_missing_tool(doxygen "API pages")
endif()

set(folder "${CMAKE_INSTALL_DOCDIR}")
if(DOVREL_CONFIGURED_ROOT)
    set(folder "${CMAKE_INSTALL_DATAROOTDIR}/doc/dovrel-doc")
endif()
dovrel_install_folders(documentation "${folder}/pictures")
if(GO_MD2MAN)
    dovrel_install_folders(documentation
        "${CMAKE_INSTALL_MANDIR}/man3" "${CMAKE_INSTALL_MANDIR}/man5" "${CMAKE_INSTALL_MANDIR}/man7")
    dovrel_install_folders(tools "${CMAKE_INSTALL_MANDIR}/man1")
endif()
if(DOXYGEN)
    dovrel_install_folders(documentation "${folder}/api/search")
endif()
# The page of the tool comes with the tool.
install(DIRECTORY "${documentation}/man/" DESTINATION "${CMAKE_INSTALL_MANDIR}" COMPONENT documentation OPTIONAL
    PATTERN man1 EXCLUDE)
install(DIRECTORY "${documentation}/man/man1" DESTINATION "${CMAKE_INSTALL_MANDIR}" COMPONENT tools OPTIONAL)
install(DIRECTORY "${documentation}/api" DESTINATION "${folder}" COMPONENT documentation OPTIONAL)
install(FILES docs/development-server.md docs/environment.md docs/recordings.md docs/troubles.md docs/tutorial.md
    DESTINATION "${folder}" COMPONENT documentation)
install(DIRECTORY docs/pictures DESTINATION "${folder}" COMPONENT documentation FILES_MATCHING PATTERN "*.png" PATTERN "*.svg")
