# dovrel_test(<target> SOURCES <file>... [DEPENDS <target>...] [TIMEOUT <seconds>])
#
# One GoogleTest program; CTest runs each of its tests in a process of its own, so that they run in parallel and in
# any order.
find_package(GTest REQUIRED)
include(GoogleTest)

function(dovrel_test target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "SOURCES;DEPENDS")
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    add_executable(${target} ${arg_SOURCES})
    target_link_libraries(${target} PRIVATE ${arg_DEPENDS} GTest::gmock GTest::gtest GTest::gtest_main)
    gtest_discover_tests(${target} TEST_PREFIX "${target}." DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT ${arg_TIMEOUT})
endfunction()
