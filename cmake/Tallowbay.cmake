# Warnings, language level and sanitizers of every target, in one place.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

option(TALLOWBAY_BENCHMARKS "Build the benchmarks" OFF)
set(TALLOWBAY_SANITIZE "" CACHE STRING "Sanitizers, as in -fsanitize= (address,undefined or thread)")

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE}")
endif()

add_library(tallowbay_options INTERFACE)
target_compile_options(tallowbay_options INTERFACE -Wall -Wextra -Werror)
target_include_directories(tallowbay_options INTERFACE "${PROJECT_SOURCE_DIR}/src")
if(TALLOWBAY_SANITIZE)
  add_compile_options(-fsanitize=${TALLOWBAY_SANITIZE} -fno-omit-frame-pointer
    -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${TALLOWBAY_SANITIZE})
endif()

# tallowbay_library(NAME SOURCES ... [DEPENDS ...])
# A folder's code, known to others as tallowbay::NAME.
function(tallowbay_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;DEPENDS")
  add_library(tallowbay_${name} STATIC ${arg_SOURCES})
  add_library(tallowbay::${name} ALIAS tallowbay_${name})
  target_link_libraries(tallowbay_${name} PUBLIC tallowbay_options ${arg_DEPENDS})
endfunction()

# tallowbay_test(NAME SOURCES ... [DEPENDS ...] [LABEL unit|desktop] [TIMEOUT seconds])
# One GoogleTest program; every test in it is a test of CTest, too.
function(tallowbay_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "LABEL;TIMEOUT" "SOURCES;DEPENDS")
  if(NOT arg_LABEL)
    set(arg_LABEL unit)
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 60)
  endif()
  add_executable(${name}_test ${arg_SOURCES})
  target_link_libraries(${name}_test PRIVATE tallowbay_options GTest::gmock GTest::gtest_main
    ${arg_DEPENDS})
  gtest_discover_tests(${name}_test TEST_PREFIX "${name}." DISCOVERY_TIMEOUT 60
    PROPERTIES LABELS ${arg_LABEL} TIMEOUT ${arg_TIMEOUT})
endfunction()

include(GoogleTest)
