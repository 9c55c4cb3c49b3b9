# How everything of ours is compiled.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_AUTOMOC ON)

include(CheckPIESupported)
check_pie_supported()
include(GNUInstallDirs)

find_program(KELMOTH_CCACHE ccache)
if(KELMOTH_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${KELMOTH_CCACHE})
endif()

get_property(has_many_types GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
if(NOT CMAKE_BUILD_TYPE AND NOT has_many_types)
    message(STATUS "No CMAKE_BUILD_TYPE is set: this is a release build")
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Debug, Release, RelWithDebInfo or MinSizeRel" FORCE)
endif()

set(KELMOTH_SANITIZE "" CACHE STRING "Sanitizers of the whole build, as -fsanitize= takes them")
option(KELMOTH_COVERAGE "Count executed lines" OFF)

add_library(kelmoth_options INTERFACE)
target_include_directories(kelmoth_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(kelmoth_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    -fstack-protector-strong $<$<CONFIG:Release,RelWithDebInfo>:-fstack-clash-protection>)
# g++ 12 takes every std::string put before another for an overlapping copy once it optimises.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(kelmoth_options INTERFACE -Wno-restrict)
endif()
# -fcf-protection exists on x86 only.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|i.86|AMD64")
    target_compile_options(kelmoth_options INTERFACE -fcf-protection)
endif()
target_link_options(kelmoth_options INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
target_compile_definitions(kelmoth_options INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
    $<$<CONFIG:Release,RelWithDebInfo>:_GLIBCXX_ASSERTIONS>)
# The sanitizers do not see into the checked variants of the C library's functions.
if(NOT KELMOTH_SANITIZE)
    target_compile_options(kelmoth_options INTERFACE
        $<$<CONFIG:Release,RelWithDebInfo>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3>)
endif()
if(KELMOTH_SANITIZE)
    target_compile_options(kelmoth_options INTERFACE
        -fsanitize=${KELMOTH_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(kelmoth_options INTERFACE -fsanitize=${KELMOTH_SANITIZE})
endif()
if(KELMOTH_COVERAGE)
    target_compile_options(kelmoth_options INTERFACE --coverage -fprofile-update=atomic)
    target_link_options(kelmoth_options INTERFACE --coverage)
endif()

# kelmoth_room(NAME SOURCES … LINKS …): one room as a static library. LINKS are public: what a room's
# headers name, its users may need.
function(kelmoth_room name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC kelmoth_options ${ARG_LINKS})
endfunction()

# kelmoth_test(NAME SOURCES … LINKS … [LABELS …] [PROPERTIES …]): one GoogleTest program; each of its tests
# is a ctest. Its main() is Tests/main.cpp.
function(kelmoth_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;LABELS;PROPERTIES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE kelmoth_options kelmoth_test_main ${ARG_LINKS} GTest::gmock)
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 120 LABELS "${ARG_LABELS}" ${ARG_PROPERTIES})
endfunction()
