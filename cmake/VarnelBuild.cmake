# How every target of the house is built.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

option(VARNEL_TESTS "Build the tests" ON)
option(VARNEL_BENCH "Build the benchmarks" OFF)
option(VARNEL_FUZZ "Build the fuzz targets (clang)" OFF)
option(VARNEL_WERROR "Treat warnings as errors" OFF)
set(VARNEL_SANITIZE "" CACHE STRING "Sanitizers for everything, as -fsanitize takes them")

add_library(build_flags INTERFACE)
target_include_directories(build_flags INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_options(build_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
    $<$<BOOL:${VARNEL_WERROR}>:-Werror>
    # g++ 12 sees overlaps in std::string where there are none once it optimises.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(VARNEL_SANITIZE)
    target_compile_options(build_flags INTERFACE -fsanitize=${VARNEL_SANITIZE} -fno-omit-frame-pointer
        -fno-sanitize-recover=all
        # g++ sees uninitialised members in its own <regex> once the sanitizers' checks stand between.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(build_flags INTERFACE -fsanitize=${VARNEL_SANITIZE})
endif()

find_package(PkgConfig REQUIRED)
pkg_check_modules(SQLITE REQUIRED IMPORTED_TARGET GLOBAL sqlite3)
pkg_check_modules(MARIADB REQUIRED IMPORTED_TARGET GLOBAL libmariadb)
pkg_check_modules(ODBC REQUIRED IMPORTED_TARGET GLOBAL odbc)

# The headers that most files read, compiled once: worth a sixth of the time of a build from nothing. Only the sanitized
# build uses them, so that the release build goes on proving that every file names what it needs; a compiler cache takes
# their place where there is one.
option(VARNEL_PRECOMPILE "Compile common headers once" OFF)
if(VARNEL_PRECOMPILE AND NOT CMAKE_CXX_COMPILER_LAUNCHER AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    set(precompiled_headers <algorithm> <array> <cstdint> <cstring> <functional> <map> <memory> <optional> <span> <string>
        <string_view> <utility> <vector>)
    file(WRITE ${CMAKE_BINARY_DIR}/precompiled.cpp "")
    add_library(precompiled OBJECT ${CMAKE_BINARY_DIR}/precompiled.cpp)
    target_link_libraries(precompiled PRIVATE build_flags)
    target_precompile_headers(precompiled PRIVATE ${precompiled_headers})
endif()

# use_precompiled(NAME PRECOMPILED): lets a target's files read that target's headers, if it was made.
function(use_precompiled name precompiled)
    if(TARGET ${precompiled})
        target_precompile_headers(${name} REUSE_FROM ${precompiled})
    endif()
endfunction()

# varnel_library(NAME SOURCES a.cpp ... [LINKS lower_target ...] [PRIVATE_LINKS library ...])
# A folder's static library. LINKS are the folders whose headers its own headers include.
function(varnel_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC build_flags ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS})
    use_precompiled(${name} precompiled)
endfunction()

# The test programs that run the programs themselves (label "release"): built only when this target is asked for, and in
# the release build as a rule.
add_custom_target(release_tests)

# varnel_test(NAME SOURCES a_test.cpp ... LINKS target ... [WHOLE] [LABELS word ...])
# A test program; CTest runs its cases one by one, or the program once with WHOLE (cases that share a server).
function(varnel_test name)
    cmake_parse_arguments(ARG "WHOLE" "TIMEOUT" "SOURCES;LINKS;LABELS" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 300)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE build_flags ${ARG_LINKS} GTest::gtest GTest::gmock GTest::gtest_main)
    # Qt asks for position-independent code, which the common headers are not compiled for.
    if(NOT "${ARG_LINKS}" MATCHES "Qt6::")
        use_precompiled(${name} precompiled_for_tests)
    endif()
    if("release" IN_LIST ARG_LABELS)
        add_dependencies(release_tests ${name})
        set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON)
    endif()
    if(ARG_WHOLE)
        add_test(NAME ${name} COMMAND ${name} WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})
        set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}")
    else()
        gtest_discover_tests(${name} WORKING_DIRECTORY ${CMAKE_SOURCE_DIR} DISCOVERY_TIMEOUT 60
            PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}")
    endif()
endfunction()
