# Foundation on systems without the framework. GNUstep has no CMake package, and its own configuration tool
# needs a complete GNUstep make installation. Therefore the flags are set here.
find_path(GNUSTEP_INCLUDE_DIR Foundation/Foundation.h PATHS /usr/include/GNUstep REQUIRED)
find_library(GNUSTEP_BASE_LIBRARY gnustep-base REQUIRED)

add_library(GNUstep_base INTERFACE)
add_library(GNUstep::base ALIAS GNUstep_base)
target_include_directories(GNUstep_base SYSTEM INTERFACE "${GNUSTEP_INCLUDE_DIR}")
target_compile_definitions(GNUstep_base INTERFACE $<$<COMPILE_LANGUAGE:OBJCXX>:GNUSTEP>
    $<$<COMPILE_LANGUAGE:OBJCXX>:GNUSTEP_BASE_LIBRARY=1> $<$<COMPILE_LANGUAGE:OBJCXX>:GNU_GUI_LIBRARY=1>
    $<$<COMPILE_LANGUAGE:OBJCXX>:GNU_RUNTIME=1> $<$<COMPILE_LANGUAGE:OBJCXX>:_NATIVE_OBJC_EXCEPTIONS>)
target_compile_options(GNUstep_base INTERFACE
    "$<$<COMPILE_LANGUAGE:OBJCXX>:-fexceptions;-fobjc-exceptions;-fconstant-string-class=NSConstantString;-fno-strict-aliasing;-pthread>")
target_link_libraries(GNUstep_base INTERFACE "${GNUSTEP_BASE_LIBRARY}" objc m)

# Clang can use GCC's Objective-C runtime, but does not search for the headers of that runtime.
if(CMAKE_OBJCXX_COMPILER_ID MATCHES Clang)
    execute_process(COMMAND gcc -print-file-name=include OUTPUT_VARIABLE gcc_include OUTPUT_STRIP_TRAILING_WHITESPACE)
    target_compile_options(GNUstep_base INTERFACE
        $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-runtime=gcc>
        "$<$<COMPILE_LANGUAGE:CXX,OBJCXX>:SHELL:-idirafter ${gcc_include}>")
endif()
