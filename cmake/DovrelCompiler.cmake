# The compiler settings for all of our code. They do not apply to third-party headers, which are SYSTEM.
set(CMAKE_C_STANDARD 99)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_STANDARD 17)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
foreach(lang C CXX OBJCXX)
    set(CMAKE_${lang}_VISIBILITY_PRESET hidden)
endforeach()
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# Without these definitions, the 32-bit C library does not support large files, and times after 2038.
if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND NOT APPLE)
    add_compile_definitions(_FILE_OFFSET_BITS=64 _TIME_BITS=64)
endif()

# macOS before 10.9 also has another C++ library, which is the default there and does not support C++17.
if(APPLE)
    add_compile_options($<$<COMPILE_LANGUAGE:CXX,OBJCXX>:-stdlib=libc++>)
    add_link_options(-stdlib=libc++)
endif()

set(warnings -Wall -Wextra -Wshadow -Wconversion -Wno-multichar)
add_compile_options(${warnings} $<$<COMPILE_LANGUAGE:C,CXX>:-Wpedantic>
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor> $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>)
if(DOVREL_WARNINGS_AS_ERRORS)
    add_compile_options(-Werror)
endif()
if(DOVREL_SANITIZE)
    add_compile_options(-fsanitize=${DOVREL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${DOVREL_SANITIZE})
endif()
if(DOVREL_COVERAGE)
    # The counts of several processes of one program are added up.
    add_compile_options(--coverage -fprofile-update=atomic)
    add_link_options(--coverage)
endif()
