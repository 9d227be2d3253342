# dovrel_test(<target> SOURCES <file>... [DEPENDS <target>...] [TIMEOUT <seconds>] [LABEL <label>])
#
# One GoogleTest program; CTest runs each of its tests in a process of its own, so that they run in parallel and in
# any order, and has the tools of tests/support. The label "windows" is that of tests that press buttons in real windows.
find_package(GTest REQUIRED)
include(GoogleTest)

# The framework's headers take longer to read than most tests; they are read once for all programs.
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/test_headers.cpp" CONTENT "")
# A program, because the compiler tells position-independent programs from libraries.
add_executable(test_headers "${PROJECT_BINARY_DIR}/test_headers.cpp")
target_link_libraries(test_headers PRIVATE GTest::gmock GTest::gtest GTest::gtest_main)
target_precompile_headers(test_headers PRIVATE <gmock/gmock.h> <gtest/gtest.h>)

# tests/ as an include root, for what several programs share ("tests/support/TestRoot.h").
set(DOVREL_TEST_INCLUDE_ROOT "${PROJECT_BINARY_DIR}/headers/tests")
file(MAKE_DIRECTORY "${DOVREL_TEST_INCLUDE_ROOT}")
file(CREATE_LINK "${PROJECT_SOURCE_DIR}/tests" "${DOVREL_TEST_INCLUDE_ROOT}/tests" SYMBOLIC)

function(dovrel_test target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT;LABEL" "SOURCES;DEPENDS")
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    add_executable(${target} ${arg_SOURCES})
    target_link_libraries(${target} PRIVATE ${arg_DEPENDS} dovrel_test_tools GTest::gmock GTest::gtest GTest::gtest_main)
    target_precompile_headers(${target} REUSE_FROM test_headers)
    list(FILTER arg_SOURCES INCLUDE REGEX "\\.(mm|c)$")
    set_source_files_properties(${arg_SOURCES} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
    # What may take longest starts first, so that nothing is left to wait for at the end.
    set(properties TIMEOUT ${arg_TIMEOUT} COST ${arg_TIMEOUT})
    if(arg_LABEL)
        list(APPEND properties LABELS ${arg_LABEL})
    endif()
    gtest_discover_tests(${target} TEST_PREFIX "${target}." DISCOVERY_MODE PRE_TEST PROPERTIES ${properties})
endfunction()
