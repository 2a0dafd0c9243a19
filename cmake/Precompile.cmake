# Precompiled headers: of the standard library for every target, and of Qt and GoogleTest for those
# that use them. Our own are none of them, so a change of one never costs more than it did. A build
# without the option shows whether each source includes what it needs.

set(standard_headers <algorithm> <array> <atomic> <chrono> <cmath> <condition_variable> <cstdint>
  <deque> <filesystem> <fstream> <functional> <iostream> <map> <memory> <mutex> <optional> <set>
  <span> <sstream> <string> <string_view> <thread> <tuple> <utility> <variant> <vector>)
set(qt_headers <QApplication> <QEvent> <QGuiApplication> <QHBoxLayout> <QImage>
  <QKeyEvent> <QLabel> <QMouseEvent> <QPainter> <QPainterPath> <QPointer> <QPushButton> <QScreen>
  <QString> <QTimer> <QVBoxLayout> <QWidget>)
set(gtest_headers <gmock/gmock.h> <gtest/gtest.h>)

# Tests run once: their own code is not worth the time to optimise it.
set(test_options)
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  set(test_options -O0)
endif()
# The checks of each pointer are half of what a sanitizer build of a test compiles, and a bad pointer
# of a test ends in AddressSanitizer. The libraries keep all checks, and the tests all others.
if(TALLOWBAY_SANITIZE MATCHES "undefined")
  list(APPEND test_options -fno-sanitize=null,alignment,object-size,vptr)
endif()

# tallowbay_precompiled(NAME HEADERS ... DEPENDS ...)
# A target that does nothing but to hold precompiled headers for others.
function(tallowbay_precompiled name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;DEPENDS")
  set(source "${CMAKE_BINARY_DIR}/precompiled/${name}.cpp")
  file(CONFIGURE OUTPUT "${source}" CONTENT "// Nothing but its precompiled headers.\n")
  add_library(precompiled_${name} OBJECT "${source}")
  target_link_libraries(precompiled_${name} PRIVATE tallowbay_options ${arg_DEPENDS})
  target_precompile_headers(precompiled_${name} PRIVATE ${arg_HEADERS})
endfunction()

if(TALLOWBAY_PRECOMPILE)
  # Libraries and programs share them, so they are of the same kind.
  add_compile_options(-fPIC)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # Of what it inlines from a precompiled header, GCC 12 forgets that it is the system's, and
    # repeats of std::string what -Wno-restrict silences, in other words.
    target_compile_options(tallowbay_options INTERFACE -Wno-stringop-overflow -Wno-array-bounds)
  endif()
  tallowbay_precompiled(standard HEADERS ${standard_headers})
  tallowbay_precompiled(qt HEADERS ${standard_headers} ${qt_headers}
    DEPENDS Qt6::Widgets)
  if(BUILD_TESTING)
    tallowbay_precompiled(standard_test HEADERS ${standard_headers} ${gtest_headers}
      DEPENDS GTest::gmock)
    tallowbay_precompiled(qt_test HEADERS ${standard_headers} ${qt_headers} ${gtest_headers}
      DEPENDS Qt6::Widgets GTest::gmock)
    target_compile_options(precompiled_standard_test PRIVATE ${test_options})
    target_compile_options(precompiled_qt_test PRIVATE ${test_options})
  endif()
endif()

# tallowbay_precompile(TARGET DEPENDENCY...)
# Gives a target the precompiled headers that fit what it links, directly or not.
function(tallowbay_precompile target)
  set(kind standard)
  foreach(dependency IN LISTS ARGN)
    if(TARGET "${dependency}")
      get_target_property(toolkit "${dependency}" TALLOWBAY_TOOLKIT)
    endif()
    if(dependency MATCHES "^Qt6::" OR toolkit)
      set(kind qt)
      set_target_properties(${target} PROPERTIES TALLOWBAY_TOOLKIT ON)
    endif()
  endforeach()
  if("GTest::gmock" IN_LIST ARGN)
    string(APPEND kind _test)
  endif()
  if(TALLOWBAY_PRECOMPILE)
    target_precompile_headers(${target} REUSE_FROM precompiled_${kind})
    if(kind MATCHES "^qt")
      # What is precompiled must be found and mean the same, even where all that is linked is
      # another module of Qt.
      foreach(module Qt6::Core Qt6::Gui Qt6::Widgets)
        target_include_directories(${target} SYSTEM PRIVATE
          $<TARGET_PROPERTY:${module},INTERFACE_INCLUDE_DIRECTORIES>)
        target_compile_definitions(${target} PRIVATE
          $<TARGET_PROPERTY:${module},INTERFACE_COMPILE_DEFINITIONS>)
      endforeach()
    endif()
  endif()
endfunction()
