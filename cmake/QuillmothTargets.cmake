# Compiler settings common to every target, and the functions that declare targets of this project.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
# One kind of code in libraries and programs: a precompiled header serves one kind only.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_COMPILE_OPTIONS_PIE -fPIC)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    # Precompiled headers need the sloppiness; the base directory lets build folders share results.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${CCACHE_PROGRAM})
endif()

find_package(Threads REQUIRED)
add_library(QuillmothOptions INTERFACE)
# Everything is compiled for threads: a precompiled header wants the same macros everywhere.
target_compile_options(QuillmothOptions INTERFACE -pthread)
target_link_libraries(QuillmothOptions INTERFACE Threads::Threads)
target_compile_options(QuillmothOptions INTERFACE -Wall -Wextra -Wpedantic)
if(QUILLMOTH_WARNINGS_AS_ERRORS)
    target_compile_options(QuillmothOptions INTERFACE -Werror)
endif()
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The compiler takes a source that another one includes for a header, whose unnamed namespaces it warns of.
    target_compile_options(QuillmothOptions INTERFACE -Wno-subobject-linkage)
endif()
# "emit" is a function of Signal here.
target_compile_definitions(QuillmothOptions INTERFACE QT_NO_KEYWORDS)
if(CCACHE_PROGRAM AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(QuillmothOptions INTERFACE -fpch-preprocess)
endif()
# What makes a fault of ours harder to use against the user. packaging/check-hardening looks for it in the program.
target_compile_definitions(QuillmothOptions INTERFACE _GLIBCXX_ASSERTIONS)
if(NOT QUILLMOTH_SANITIZE)
    target_compile_options(QuillmothOptions INTERFACE -fstack-protector-strong -fstack-clash-protection)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64|i.86")
        target_compile_options(QuillmothOptions INTERFACE -fcf-protection)
    endif()
    # Fortified functions need the optimiser.
    target_compile_options(QuillmothOptions INTERFACE
        "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
    target_link_options(QuillmothOptions INTERFACE -Wl,-z,relro,-z,now)
endif()
if(QUILLMOTH_SANITIZE)
    target_compile_options(QuillmothOptions INTERFACE
        -fsanitize=${QUILLMOTH_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(QuillmothOptions INTERFACE -fsanitize=${QUILLMOTH_SANITIZE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # With sanitizers the compiler loses track of what was set, and warns of values that always are.
        target_compile_options(QuillmothOptions INTERFACE -Wno-maybe-uninitialized)
    endif()
endif()

# The headers of libraries that most sources read are compiled once for the whole build, in three sets.
function(quillmoth_precompiled name)
    cmake_parse_arguments(ARG "" "" "HEADERS;LINKS" ${ARGN})
    file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/precompiled/${name}.cpp CONTENT "")
    add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/precompiled/${name}.cpp)
    target_link_libraries(${name} PRIVATE QuillmothOptions ${ARG_LINKS})
    target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets)
set(standard_headers <algorithm> <chrono> <functional> <map> <memory> <optional> <string> <string_view> <utility>
    <variant> <vector>)
quillmoth_precompiled(PrecompiledStandard HEADERS ${standard_headers})
quillmoth_precompiled(PrecompiledQt
    HEADERS ${standard_headers} <QKeyEvent> <QPainter> <QTextLayout> <QTimer> <QWidget>
    LINKS Qt6::Widgets)
if(QUILLMOTH_BUILD_TESTS)
    find_package(GTest REQUIRED)
    quillmoth_precompiled(PrecompiledTest HEADERS ${standard_headers} <gtest/gtest.h> LINKS GTest::gtest)
endif()

# A module's headers are found under their path from the root, and by those targets alone that link the module: each
# has an include folder of its own, with links to its headers.
function(quillmoth_export_headers name)
    set(folder ${CMAKE_BINARY_DIR}/include/${name})
    file(REMOVE_RECURSE ${folder})
    file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
    foreach(header IN LISTS headers)
        cmake_path(GET header PARENT_PATH module)
        file(MAKE_DIRECTORY ${folder}/${module})
        file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${header} ${folder}/${header} SYMBOLIC)
    endforeach()
    target_include_directories(${name} PUBLIC ${folder})
endfunction()

# quillmoth_library(NAME [PRECOMPILED set] SOURCES a.cpp ... LINKS lib ... PRIVATE_LINKS lib ...): a static library of
# this project, which is the module of its folder.
function(quillmoth_library name)
    cmake_parse_arguments(ARG "" "PRECOMPILED" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    if(NOT ARG_PRECOMPILED)
        set(ARG_PRECOMPILED PrecompiledStandard)
    endif()
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC QuillmothOptions ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS})
    target_precompile_headers(${name} REUSE_FROM ${ARG_PRECOMPILED})
    quillmoth_export_headers(${name})
endfunction()

# quillmoth_desktop_test(NAME COMMAND ...): the ctest entry of a test that drives other people's programs, which now and
# then miss a key on a busy machine. It has three tries; those that needed more than one are noted in second-tries.
function(quillmoth_desktop_test name)
    add_test(NAME desktop/${name}
        COMMAND ${CMAKE_SOURCE_DIR}/tools/up-to-three-times ${CMAKE_BINARY_DIR}/second-tries/${name} ${ARGN})
    set_tests_properties(desktop/${name} PROPERTIES LABELS desktop)
endfunction()

# quillmoth_test(NAME LABEL unit|integration|desktop [PRECOMPILED set] SOURCES a.cpp ... LINKS lib ... [TIMEOUT seconds]):
# one GoogleTest program, one ctest entry. The label is the folder under tests/; the target tests-<label> builds all of
# a kind.
function(quillmoth_test name)
    cmake_parse_arguments(ARG "" "LABEL;TIMEOUT;PRECOMPILED" "SOURCES;LINKS" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    if(NOT ARG_PRECOMPILED)
        set(ARG_PRECOMPILED PrecompiledTest)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE QuillmothTestHeaders ${ARG_LINKS} GTest::gtest GTest::gtest_main)
    target_precompile_headers(${name} REUSE_FROM ${ARG_PRECOMPILED})
    if(NOT TARGET tests-${ARG_LABEL})
        add_custom_target(tests-${ARG_LABEL})
    endif()
    add_dependencies(tests-${ARG_LABEL} ${name})
    if(ARG_LABEL STREQUAL desktop)
        quillmoth_desktop_test(${name} $<TARGET_FILE:${name}>)
    else()
        add_test(NAME ${ARG_LABEL}/${name} COMMAND ${name})
    endif()
    set_tests_properties(${ARG_LABEL}/${name} PROPERTIES LABELS ${ARG_LABEL} TIMEOUT ${ARG_TIMEOUT})
endfunction()

# What tests and benchmarks share is found under its path from the root.
add_library(QuillmothTestHeaders INTERFACE)
target_link_libraries(QuillmothTestHeaders INTERFACE QuillmothOptions)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/include/tests)
file(CREATE_LINK ${CMAKE_SOURCE_DIR}/tests ${CMAKE_BINARY_DIR}/include/tests/tests SYMBOLIC)
target_include_directories(QuillmothTestHeaders INTERFACE ${CMAKE_BINARY_DIR}/include/tests)

# quillmoth_benchmark(NAME SOURCES a.cpp ... LINKS lib ...): one Google Benchmark program, part of the target benchmarks.
function(quillmoth_benchmark name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    find_package(benchmark REQUIRED)
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE QuillmothTestHeaders ${ARG_LINKS} benchmark::benchmark)
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
