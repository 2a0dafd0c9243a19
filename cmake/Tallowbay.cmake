# Warnings, language level, sanitizers and precompiled headers of every target, in one place.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

option(TALLOWBAY_BENCHMARKS "Build the benchmarks" OFF)
option(TALLOWBAY_UNIT_TESTS "Of the tests, build those without a desktop, too" ON)
option(TALLOWBAY_WERROR "A warning ends the build" OFF)
option(TALLOWBAY_PRECOMPILE "Precompile the headers of the standard library, Qt and GoogleTest" OFF)
set(TALLOWBAY_SANITIZE "" CACHE STRING "Sanitizers, as in -fsanitize= (address,undefined or thread)")

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${PROJECT_SOURCE_DIR}/cmake/cached-compiler" "${CCACHE}")
endif()

# Most of all linking is of test programs, which a fast linker makes in no time.
find_program(LLD ld.lld)
if(LLD AND NOT CMAKE_BUILD_TYPE STREQUAL "Release")
  add_link_options(-fuse-ld=lld)
endif()

add_library(tallowbay_options INTERFACE)
target_compile_options(tallowbay_options INTERFACE -Wall -Wextra)
if(TALLOWBAY_WERROR)
  target_compile_options(tallowbay_options INTERFACE -Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 takes std::string's own copying for an overlap once it has inlined it (GCC bug 105651).
  target_compile_options(tallowbay_options INTERFACE -Wno-restrict)
endif()
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # It takes a source that is built together with others for a header.
  target_compile_options(tallowbay_options INTERFACE -Wno-subobject-linkage)
endif()
target_include_directories(tallowbay_options INTERFACE "${PROJECT_SOURCE_DIR}/src")
# Qt's keywords are macros: a member function could not be called emit.
target_compile_definitions(tallowbay_options INTERFACE QT_NO_KEYWORDS)
if(TALLOWBAY_SANITIZE)
  add_compile_options(-fsanitize=${TALLOWBAY_SANITIZE} -fno-omit-frame-pointer
    -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${TALLOWBAY_SANITIZE})
endif()

include(Precompile)

# tallowbay_library(NAME SOURCES ... [DEPENDS ...])
# A folder's code, known to others as tallowbay::NAME.
function(tallowbay_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;DEPENDS")
  add_library(tallowbay_${name} STATIC ${arg_SOURCES})
  add_library(tallowbay::${name} ALIAS tallowbay_${name})
  target_link_libraries(tallowbay_${name} PUBLIC tallowbay_options ${arg_DEPENDS})
  tallowbay_precompile(tallowbay_${name} ${arg_DEPENDS})
endfunction()

# tallowbay_helper(NAME SOURCES ... [DEPENDS ...])
# An executable that the program runs, built and installed where the program looks for it. All of
# them together are the target "helpers".
add_custom_target(helpers)
function(tallowbay_helper name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;DEPENDS")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE tallowbay_options ${arg_DEPENDS})
  tallowbay_precompile(${name} ${arg_DEPENDS})
  set_target_properties(${name} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/libexec/tallowbay")
  install(TARGETS ${name} RUNTIME DESTINATION "${CMAKE_INSTALL_LIBEXECDIR}/tallowbay")
  add_dependencies(helpers ${name})
endfunction()

# tallowbay_test(NAME SOURCES ... [DEPENDS ...] [PROGRAMS [MACRO=]target ...]
#   [LABEL unit|desktop] [TIMEOUT seconds] [THREADS] [LONG] [SHIPPED])
# One GoogleTest program; every test in it is a test of CTest, too. With a sanitizer, which takes a
# process more time to start than most tests do to run, the program is one test. The programs of a label
# together are the target "unit_tests" or "desktop_tests". None is made without BUILD_TESTING. PROGRAMS
# are those that the tests start; a macro says where one lies. THREADS marks those that are worth a
# run under ThreadSanitizer: the target "thread_tests", and a label that -L threads finds, too; those
# of a desktop only where there is an X server to start. LONG ones begin before the others, so that
# none of them is left alone at the end. SHIPPED unit tests, which need a build without sanitizers or
# one with the benchmarks, are also made without TALLOWBAY_UNIT_TESTS.
find_program(XVFB Xvfb)
add_custom_target(unit_tests)
add_custom_target(desktop_tests)
add_custom_target(thread_tests)
function(tallowbay_test name)
  if(NOT BUILD_TESTING)
    return()
  endif()
  cmake_parse_arguments(PARSE_ARGV 1 arg "THREADS;LONG;SHIPPED" "LABEL;TIMEOUT" "SOURCES;DEPENDS;PROGRAMS")
  if(NOT arg_LABEL)
    set(arg_LABEL unit)
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 60)
  endif()
  if(arg_LABEL STREQUAL unit AND NOT TALLOWBAY_UNIT_TESTS AND NOT arg_SHIPPED)
    return()
  endif()
  add_executable(${name}_test ${arg_SOURCES})
  target_link_libraries(${name}_test PRIVATE tallowbay_options GTest::gmock GTest::gtest_main
    ${arg_DEPENDS})
  target_compile_options(${name}_test PRIVATE ${test_options})
  tallowbay_precompile(${name}_test GTest::gmock ${arg_DEPENDS})
  foreach(program IN LISTS arg_PROGRAMS)
    if(program MATCHES "^([A-Z_]+)=(.+)$")
      set(program ${CMAKE_MATCH_2})
      target_compile_definitions(${name}_test
        PRIVATE "${CMAKE_MATCH_1}=\"$<TARGET_FILE:${program}>\"")
    endif()
    add_dependencies(${name}_test ${program})
  endforeach()
  add_dependencies(${arg_LABEL}_tests ${name}_test)
  if(arg_THREADS AND (XVFB OR NOT arg_LABEL STREQUAL desktop))
    string(APPEND arg_LABEL -threads)
    add_dependencies(thread_tests ${name}_test)
  endif()
  if(TALLOWBAY_SANITIZE)
    add_test(NAME ${name} COMMAND ${name}_test)
    if(arg_LONG)
      set_tests_properties(${name} PROPERTIES COST 100)
    endif()
    set_tests_properties(${name} PROPERTIES LABELS ${arg_LABEL} TIMEOUT 600
      ENVIRONMENT "GTEST_OUTPUT=xml:${CMAKE_BINARY_DIR}/reports/${name}.xml")
  else()
    gtest_discover_tests(${name}_test TEST_PREFIX "${name}." DISCOVERY_TIMEOUT 60
      PROPERTIES LABELS ${arg_LABEL} TIMEOUT ${arg_TIMEOUT})
  endif()
endfunction()

include(GoogleTest)
