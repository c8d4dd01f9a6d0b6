# SPDX-FileCopyrightText: the Roamly developers
# SPDX-License-Identifier: GPL-3.0-or-later

# One folder under src/ is one static library, one namespace and one set of allowed dependencies.
#
#   roamly_module(Timeline USES ProjectModel LINKS PkgConfig::zimg)
#
# WIDGETS marks a module of the window, whose classes have signals.
#
# USES names the Roamly modules whose public headers this one may include (they are public: what a
# module's headers mention, its users see). LINKS names foreign libraries, always private.
function(roamly_module name)
  cmake_parse_arguments(arg "WIDGETS" "" "USES;LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  if(NOT sources)
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${name} INTERFACE ${arg_USES})
    return()
  endif()
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(${name} PUBLIC ${arg_USES} PRIVATE roamly_compiler ${arg_LINKS})
  target_compile_features(${name} PUBLIC cxx_std_20)
  if(arg_WIDGETS)
    file(GLOB headers CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
    target_sources(${name} PRIVATE ${headers})
    # Without the compiler's own macros moc does not read the concepts of the standard library, which Qt 6.4's
    # cannot. It stumbles over <chrono> then, which it is told to have read already.
    set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOMOC_COMPILER_PREDEFINES OFF
      AUTOMOC_MOC_OPTIONS "-D_GLIBCXX_CHRONO")
    # What the tools of Qt write is not held to the warnings of what is written here.
    target_compile_definitions(${name} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS)
  endif()
endfunction()

# The tests of one module: tests/<name>/*.cpp become one GoogleTest program.
function(roamly_module_tests name)
  cmake_parse_arguments(arg "" "" "USES;LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  if(NOT sources)
    return()
  endif()
  add_executable(${name}Tests ${sources})
  target_include_directories(${name}Tests PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${name}Tests PRIVATE
    ${name} ${arg_USES} ${arg_LINKS} roamly_compiler GTest::gmock_main)
  gtest_discover_tests(${name}Tests DISCOVERY_TIMEOUT 60
    PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()
