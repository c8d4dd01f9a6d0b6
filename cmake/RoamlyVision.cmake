# SPDX-FileCopyrightText: the Roamly developers
# SPDX-License-Identifier: GPL-3.0-or-later

# The library that runs the networks of the analysis: ONNX Runtime, the system's where it has one. Otherwise it comes
# from the packages in data/manifest.json, fetched once, when configuring, and is installed beside the program.

set(ROAMLY_PRIVATE_LIBRARIES "lib/roamly")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
list(APPEND CMAKE_INSTALL_RPATH "$ORIGIN/../${ROAMLY_PRIVATE_LIBRARIES}")

# The folders of the packages of one group, fetched where needed: <variable>_<n>, in the manifest's order.
function(roamly_fetch group variable)
  execute_process(COMMAND "${PROJECT_SOURCE_DIR}/tools/fetch-data" ${group}
    OUTPUT_VARIABLE cache OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_VARIABLE complaint RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${complaint}")
  endif()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/data/manifest.json")
  file(READ "${PROJECT_SOURCE_DIR}/data/manifest.json" manifest)
  string(JSON count LENGTH "${manifest}" packages)
  math(EXPR last "${count} - 1")
  set(number 0)
  foreach(index RANGE ${last})
    string(JSON of GET "${manifest}" packages ${index} group)
    if(of STREQUAL group)
      string(JSON name GET "${manifest}" packages ${index} name)
      string(JSON version GET "${manifest}" packages ${index} version)
      string(REPLACE "/" "+" folder "${name}@${version}")
      set(${variable}_${number} "${cache}/${folder}" PARENT_SCOPE)
      math(EXPR number "${number} + 1")
    endif()
  endforeach()
endfunction()

# A shared library that comes along with the program, in a build tree as in an installation.
function(roamly_private_library target library includes)
  if(NOT CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
    message(FATAL_ERROR "${target} comes ready-made for x86-64 only, and this is ${CMAKE_SYSTEM_PROCESSOR}")
  endif()
  set(folder "${PROJECT_BINARY_DIR}/${ROAMLY_PRIVATE_LIBRARIES}")
  file(COPY "${library}" DESTINATION "${folder}")
  get_filename_component(name "${library}" NAME)
  add_library(${target} SHARED IMPORTED GLOBAL)
  set_target_properties(${target} PROPERTIES
    IMPORTED_LOCATION "${folder}/${name}" IMPORTED_SONAME "${name}"
    INTERFACE_INCLUDE_DIRECTORIES "${includes}")
  install(FILES "${folder}/${name}" DESTINATION ${ROAMLY_PRIVATE_LIBRARIES})
endfunction()

# Distributions put the header in different places.
pkg_check_modules(system_onnxruntime QUIET IMPORTED_TARGET libonnxruntime>=1.21)
if(system_onnxruntime_FOUND)
  find_path(ONNXRUNTIME_INCLUDE_DIR onnxruntime_c_api.h
    HINTS ${system_onnxruntime_INCLUDE_DIRS}
    PATH_SUFFIXES onnxruntime onnxruntime/core/session core/session)
endif()
if(system_onnxruntime_FOUND AND ONNXRUNTIME_INCLUDE_DIR)
  set(ROAMLY_SYSTEM_ONNXRUNTIME ON)
  message(STATUS "ONNX Runtime ${system_onnxruntime_VERSION} of the system")
  add_library(Roamly::OnnxRuntime INTERFACE IMPORTED GLOBAL)
  target_include_directories(Roamly::OnnxRuntime INTERFACE "${ONNXRUNTIME_INCLUDE_DIR}")
  target_link_libraries(Roamly::OnnxRuntime INTERFACE PkgConfig::system_onnxruntime)
else()
  set(ROAMLY_SYSTEM_ONNXRUNTIME OFF)
  roamly_fetch(onnxruntime package)
  roamly_private_library(Roamly::OnnxRuntime "${package_0}/libonnxruntime.so"
    "${package_1}/prebuilds/include/onnxruntime")
endif()
