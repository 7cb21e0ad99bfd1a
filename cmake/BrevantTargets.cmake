# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later

# What every target of ours is compiled with: strict Qt, warnings, the chosen sanitizer.
add_library(brevant_options INTERFACE)
target_compile_definitions(brevant_options INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_KEYWORDS
    QT_NO_FOREACH
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)
target_compile_options(brevant_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual)
if(BREVANT_WERROR)
    target_compile_options(brevant_options INTERFACE -Werror)
endif()
if(BREVANT_SANITIZE)
    target_compile_options(brevant_options INTERFACE
        -fsanitize=${BREVANT_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(brevant_options INTERFACE -fsanitize=${BREVANT_SANITIZE})
endif()

# Hardening. tests/package/test-hardening.sh looks for it in what was built.
include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection)
    string(MAKE_C_IDENTIFIER "BREVANT_KNOWS_${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
        target_compile_options(brevant_options INTERFACE ${flag})
    endif()
endforeach()
if(NOT BREVANT_SANITIZE)
    # Only with optimisation: without it the C library warns. Undefined first, for compilers that define it themselves.
    target_compile_options(brevant_options INTERFACE
        "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
endif()
target_link_options(brevant_options INTERFACE LINKER:-z,relro,-z,now,-z,noexecstack)

# No path of this machine in what is installed, so that two builds give the same bytes wherever they are made.
check_cxx_compiler_flag(-ffile-prefix-map=/from=/to BREVANT_KNOWS_FILE_PREFIX_MAP)
if(BREVANT_KNOWS_FILE_PREFIX_MAP)
    target_compile_options(brevant_options INTERFACE "-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=")
endif()

# For the compiler's cache, which sees precompiled headers by it.
target_compile_options(brevant_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)

# brevant_add_headers(NAME LIBRARY… HEADERS HEADER…): what nearly every source includes, to be compiled once.
function(brevant_add_headers name)
    cmake_parse_arguments(arg "" "" "HEADERS" ${ARGN})
    file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp" CONTENT "")
    add_library(${name} OBJECT "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp")
    set_target_properties(${name} PROPERTIES AUTOMOC OFF)
    target_link_libraries(${name} PRIVATE brevant_options ${arg_UNPARSED_ARGUMENTS})
    target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
endfunction()

# One static library per folder, WINDOW those with widgets. Headers are included by their path from the top:
# "queue/FileQueue.h".
function(brevant_add_library name)
    cmake_parse_arguments(arg "WINDOW" "" "" ${ARGN})
    add_library(${name} STATIC ${arg_UNPARSED_ARGUMENTS})
    target_include_directories(${name} PUBLIC "${CMAKE_SOURCE_DIR}" "${CMAKE_BINARY_DIR}/generated")
    target_link_libraries(${name} PRIVATE brevant_options)
    if(arg_WINDOW)
        target_precompile_headers(${name} REUSE_FROM brevant_window_headers)
    else()
        target_precompile_headers(${name} REUSE_FROM brevant_core_headers)
    endif()
endfunction()

# The tests that exercise threads: all that the thread sanitizer's preset needs.
add_custom_target(threads-tests)

# The tests of one folder as one program, in which each tst_X.cpp of TESTS and THREADS is a class that runs alone as the
# test tst_X. WINDOW: those with widgets. THREADS: those labelled "threads". The thread sanitizer's preset runs no others, and so gets no others.
function(brevant_add_test program)
    cmake_parse_arguments(arg "WINDOW" "" "TESTS;THREADS;SOURCES;LIBRARIES;DEFINITIONS;ENVIRONMENT" ${ARGN})
    set(built ${arg_TESTS})
    if(BREVANT_SANITIZE STREQUAL "thread")
        set(built)
    endif()
    add_executable(${program} $<TARGET_OBJECTS:brevant_test_main> ${built} ${arg_THREADS} ${arg_SOURCES})
    set_target_properties(${program} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    # To optimize them took most of the time of a build.
    target_compile_options(${program} PRIVATE -O0)
    target_compile_definitions(${program} PRIVATE ${arg_DEFINITIONS})
    target_include_directories(${program} PRIVATE "${CMAKE_SOURCE_DIR}" "${CMAKE_BINARY_DIR}/generated")
    target_link_libraries(${program} PRIVATE brevant_options Qt6::Test ${arg_LIBRARIES})
    if(arg_WINDOW)
        target_link_libraries(${program} PRIVATE Qt6::Widgets)
        target_precompile_headers(${program} REUSE_FROM brevant_window_test_headers)
    else()
        target_precompile_headers(${program} REUSE_FROM brevant_test_headers)
    endif()
    if(arg_THREADS)
        add_dependencies(threads-tests ${program})
    endif()
    foreach(source IN LISTS arg_TESTS arg_THREADS)
        cmake_path(GET source STEM name)
        add_test(NAME ${name} COMMAND ${program} ${name})
        set_tests_properties(${name} PROPERTIES
            TIMEOUT 120
            ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;XDG_STATE_HOME=${CMAKE_BINARY_DIR}/tests/state/${name};${BREVANT_TEST_ENVIRONMENT};${arg_ENVIRONMENT}")
        if(source IN_LIST arg_THREADS)
            set_tests_properties(${name} PROPERTIES LABELS threads)
        endif()
    endforeach()
endfunction()
