# dovrel_test(<target> SOURCES <file>... [DEPENDS <target>...] [TIMEOUT <seconds>] [LABEL <label>])
#
# Creates one GoogleTest program with the tools of tests/support. CTest runs each of its tests in a separate
# process, so the tests run in parallel and in any order. The label "windows" is for tests that press buttons
# in real windows. Without LABEL the tests have the label DOVREL_TEST_LABEL.
#
# DOVREL_TEST_LABEL is "threads" in folders of tests/ whose code uses several threads, "library" in the other folders
# that test the code that hosts load and the server, and empty elsewhere. The target library_tests builds the programs
# of both, thread_tests those of "threads".
find_package(GTest REQUIRED)
include(GoogleTest)

# The framework's headers take longer to compile than most tests, so they are precompiled once
# for all programs.
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/test_headers.cpp" CONTENT "")
# A program and not a library, because the compiler distinguishes position-independent
# programs from libraries.
add_executable(test_headers "${PROJECT_BINARY_DIR}/test_headers.cpp")
target_link_libraries(test_headers PRIVATE GTest::gmock GTest::gtest GTest::gtest_main)
target_precompile_headers(test_headers PRIVATE <gmock/gmock.h> <gtest/gtest.h>)

# Makes tests/ an include root for files that several programs share ("tests/support/TestRoot.h").
set(DOVREL_TEST_INCLUDE_ROOT "${PROJECT_BINARY_DIR}/headers/tests")
file(MAKE_DIRECTORY "${DOVREL_TEST_INCLUDE_ROOT}")
file(CREATE_LINK "${PROJECT_SOURCE_DIR}/tests" "${DOVREL_TEST_INCLUDE_ROOT}/tests" SYMBOLIC)

add_custom_target(library_tests)
add_custom_target(thread_tests)

# dovrel_test_group(<target>) adds a program to the targets above.
function(dovrel_test_group target)
    if(DOVREL_TEST_LABEL)
        add_dependencies(library_tests ${target})
    endif()
    if(DOVREL_TEST_LABEL STREQUAL "threads")
        add_dependencies(thread_tests ${target})
    endif()
endfunction()

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
    # The tests with the longest time-outs start first, so that none of them is still running at the end.
    set(properties TIMEOUT ${arg_TIMEOUT} COST ${arg_TIMEOUT})
    if(NOT arg_LABEL)
        set(arg_LABEL ${DOVREL_TEST_LABEL})
    endif()
    if(arg_LABEL)
        list(APPEND properties LABELS ${arg_LABEL})
    endif()
    dovrel_test_group(${target})
    gtest_discover_tests(${target} TEST_PREFIX "${target}." DISCOVERY_MODE PRE_TEST PROPERTIES ${properties})
endfunction()

find_package(Python3 REQUIRED COMPONENTS Interpreter)

# dovrel_python_tests(<file> PREFIX <prefix> [TIMEOUT <seconds>])
#
# Creates one test for each test function of <file>.py, which can import the modules of tests/support.
# DOVREL_BINARY_DIR contains the path of the build folder.
function(dovrel_python_tests file)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "PREFIX;TIMEOUT" "")
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${file}.py")
    file(STRINGS "${file}.py" lines REGEX "^(class [A-Za-z]+\\(|    def test_)")
    foreach(line IN LISTS lines)
        if(line MATCHES "^class ([A-Za-z]+)")
            set(class ${CMAKE_MATCH_1})
        elseif(line MATCHES "def (test_([A-Za-z0-9_]+))")
            set(test ${arg_PREFIX}.${class}.${CMAKE_MATCH_2})
            add_test(NAME ${test}
                COMMAND "${Python3_EXECUTABLE}" -B -m unittest ${file}.${class}.${CMAKE_MATCH_1}
                WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
            set_tests_properties(${test} PROPERTIES
                ENVIRONMENT "DOVREL_BINARY_DIR=${PROJECT_BINARY_DIR};PYTHONPATH=${PROJECT_SOURCE_DIR}/tests/support"
                TIMEOUT ${arg_TIMEOUT} COST ${arg_TIMEOUT} SKIP_REGULAR_EXPRESSION "skipped=[1-9]")
        endif()
    endforeach()
endfunction()
