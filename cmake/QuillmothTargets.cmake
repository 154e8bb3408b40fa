# Compiler settings common to every target, and the functions that declare targets of this project.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    # Precompiled headers need the sloppiness; the base directory lets build folders share results.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${CCACHE_PROGRAM})
endif()

add_library(QuillmothOptions INTERFACE)
target_compile_options(QuillmothOptions INTERFACE -Wall -Wextra -Wpedantic)
if(QUILLMOTH_WARNINGS_AS_ERRORS)
    target_compile_options(QuillmothOptions INTERFACE -Werror)
endif()
target_include_directories(QuillmothOptions INTERFACE ${CMAKE_SOURCE_DIR})
if(CCACHE_PROGRAM)
    target_compile_options(QuillmothOptions INTERFACE -fpch-preprocess)
endif()
if(QUILLMOTH_SANITIZE)
    target_compile_options(QuillmothOptions INTERFACE
        -fsanitize=${QUILLMOTH_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(QuillmothOptions INTERFACE -fsanitize=${QUILLMOTH_SANITIZE})
endif()

# Headers that nearly every source of a target reads are compiled once for it, where it has sources enough to pay.
function(quillmoth_precompile name sources links)
    list(LENGTH sources count)
    if(count LESS 5)
        return()
    endif()
    set(headers <chrono> <functional> <map> <memory> <optional> <string> <string_view> <variant> <vector>)
    get_target_property(type ${name} TYPE)
    if(type STREQUAL EXECUTABLE AND links MATCHES "GTest")
        list(APPEND headers <gtest/gtest.h>)
    endif()
    if(links MATCHES "Qt6::Widgets|Qt6::Svg|QuillmothShell|MarkdownUIQt")
        list(APPEND headers <QPainter> <QTextLayout> <QTimer> <QWidget>)
    endif()
    target_precompile_headers(${name} PRIVATE ${headers})
endfunction()

# quillmoth_library(NAME SOURCES a.cpp ... LINKS lib ...): a static library of this project.
function(quillmoth_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC QuillmothOptions ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS})
    quillmoth_precompile(${name} "${ARG_SOURCES}" "${ARG_LINKS};${ARG_PRIVATE_LINKS}")
endfunction()

# quillmoth_test(NAME LABEL unit|integration|desktop SOURCES a.cpp ... LINKS lib ... [TIMEOUT seconds]):
# one GoogleTest program, one ctest entry. The label is the folder under tests/; the target tests-<label> builds all of
# a kind.
function(quillmoth_test name)
    cmake_parse_arguments(ARG "" "LABEL;TIMEOUT" "SOURCES;LINKS" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    find_package(GTest REQUIRED)
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE QuillmothOptions ${ARG_LINKS} GTest::gtest GTest::gtest_main)
    quillmoth_precompile(${name} "${ARG_SOURCES}" "${ARG_LINKS};GTest::gtest")
    if(NOT TARGET tests-${ARG_LABEL})
        add_custom_target(tests-${ARG_LABEL})
    endif()
    add_dependencies(tests-${ARG_LABEL} ${name})
    add_test(NAME ${ARG_LABEL}/${name} COMMAND ${name})
    set_tests_properties(${ARG_LABEL}/${name} PROPERTIES LABELS ${ARG_LABEL} TIMEOUT ${ARG_TIMEOUT})
endfunction()

# quillmoth_benchmark(NAME SOURCES a.cpp ... LINKS lib ...): one Google Benchmark program, part of the target benchmarks.
function(quillmoth_benchmark name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    find_package(benchmark REQUIRED)
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE QuillmothOptions ${ARG_LINKS} benchmark::benchmark)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/benchmarks)
    if(NOT TARGET benchmarks)
        add_custom_target(benchmarks)
    endif()
    add_dependencies(benchmarks ${name})
endfunction()

# The layering rules: the build stops at an #include that crosses them.
add_custom_target(check-includes ALL
    COMMAND ${CMAKE_COMMAND} -DROOT=${CMAKE_SOURCE_DIR} -P ${CMAKE_SOURCE_DIR}/cmake/CheckIncludes.cmake
    COMMENT "Checking which module includes which" VERBATIM)
