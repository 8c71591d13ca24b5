# A room is one folder of src/: a static library of all its sources, which may use the rooms it names and
# nothing else. Every target gets the same warnings, and warnings are errors.

option(ZUV_BUILD_FUZZERS "Build fuzz targets that search, not only replay (needs clang)" OFF)
option(ZUV_BUILD_BENCHMARKS "Build the benchmarks" ON)
set(ZUV_SANITIZE "" CACHE STRING "Sanitizers for every target, as -fsanitize takes them")

add_library(zuv_settings INTERFACE)
target_include_directories(zuv_settings INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(zuv_settings INTERFACE
    -Wall -Wextra -Wpedantic -Werror -Wshadow -Wno-gnu-zero-variadic-macro-arguments
    -fno-omit-frame-pointer -fvisibility=default)
target_compile_definitions(zuv_settings INTERFACE _GNU_SOURCE)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # Lets ccache see through precompiled headers.
    target_compile_options(zuv_settings INTERFACE -fpch-preprocess)
endif()
if(ZUV_SANITIZE)
    target_compile_options(zuv_settings INTERFACE -fsanitize=${ZUV_SANITIZE} -fno-sanitize-recover=all)
    target_link_options(zuv_settings INTERFACE -fsanitize=${ZUV_SANITIZE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
        # An enumeration that comes from a program in C may hold any number.
        target_compile_options(zuv_settings INTERFACE -fno-sanitize=enum)
        # What GCC tells sources of itself.
        string(REGEX MATCH "address|thread" kind ${ZUV_SANITIZE})
        string(TOUPPER ${kind} kind)
        target_compile_definitions(zuv_settings INTERFACE __SANITIZE_${kind}__)
    endif()
endif()
# Every room can be part of a library that links what all of them link: see packaging/.
set(CMAKE_FIND_PACKAGE_TARGETS_GLOBAL ON)

include(${CMAKE_CURRENT_LIST_DIR}/EmbedTexts.cmake)

# zuv_room(<name> [USES <room>...] [PRIVATE <imported library>...] [PRECOMPILE <header>...]
#          [TEXTS_HEADER <header> TEXTS <array>=<file>=<count>...])
# PRECOMPILE: third-party headers of which most sources of the room include some, compiled once for all.
# TEXTS: files that the room carries inside, see EmbedTexts.cmake.
function(zuv_room name)
    cmake_parse_arguments(ROOM "" "TEXTS_HEADER" "USES;PRIVATE;PRECOMPILE;TEXTS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.c)
    if(NOT sources AND NOT ROOM_TEXTS)
        # Headers alone.
        add_library(${name} INTERFACE)
        target_link_libraries(${name} INTERFACE zuv_settings ${ROOM_USES})
        return()
    endif()
    add_library(${name} STATIC ${sources})
    set_property(GLOBAL APPEND PROPERTY ZUV_ROOMS ${name})
    set_property(GLOBAL APPEND PROPERTY ZUV_ROOM_LIBRARIES ${ROOM_PRIVATE})
    target_link_libraries(${name} PUBLIC zuv_settings ${ROOM_USES} PRIVATE ${ROOM_PRIVATE})
    if(ZUV_BUILD_FUZZERS)
        # Coverage counters in every room, or the fuzzer searches blindly.
        target_compile_options(${name} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
    if(ROOM_TEXTS)
        zuv_embed_texts(${name} HEADER ${ROOM_TEXTS_HEADER} TEXTS ${ROOM_TEXTS})
    endif()
    if(ROOM_PRECOMPILE)
        target_precompile_headers(${name} PRIVATE ${ROOM_PRECOMPILE})
    endif()
endfunction()

# What runs under the thread sanitizer: the test programs with the label "threads".
add_custom_target(threaded_tests)

# Code that only tests runs a moment: it is not optimised, and knows its lines for a stack trace. That halves what a
# build of all tests takes.
function(zuv_build_lightly name)
    target_compile_options(${name} PRIVATE -O0 -g1)
endfunction()

# zuv_test(<name> USES <room>... [LABELS <label>...]): one test program of all *.cpp of the folder.
# Each test runs with the loopback profile in its environment.
function(zuv_test name)
    cmake_parse_arguments(TEST "" "TIMEOUT" "USES;LABELS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    add_executable(${name} ${sources})
    target_link_libraries(${name} PRIVATE test_support ${TEST_USES} GTest::gmock GTest::gtest_main)
    zuv_build_lightly(${name})
    # Code of the same kind as that of test_support, whose precompiled headers serve all test programs.
    set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
    target_compile_options(${name} PRIVATE -fPIC)
    target_precompile_headers(${name} REUSE_FROM test_support)
    if("threads" IN_LIST TEST_LABELS)
        add_dependencies(threaded_tests ${name})
    endif()
    if(ZUV_SANITIZE STREQUAL "thread")
        target_sources(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests/support/ClockLock.cpp)
    endif()
    if(NOT TEST_TIMEOUT)
        set(TEST_TIMEOUT 120)
    endif()
    # No labels, no word: what is empty would be lost on the way, and the next word taken for the label.
    set(labels "")
    if(TEST_LABELS)
        set(labels LABELS "${TEST_LABELS}")
    endif()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT ${TEST_TIMEOUT} ENVIRONMENT "${ZUV_TEST_ENVIRONMENT}" ${labels})
endfunction()
