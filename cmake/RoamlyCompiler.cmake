# SPDX-FileCopyrightText: the Roamly developers
# SPDX-License-Identifier: GPL-3.0-or-later

# Language level, warnings and sanitizers, carried by one INTERFACE target that every module links.
add_library(roamly_compiler INTERFACE)
target_compile_features(roamly_compiler INTERFACE cxx_std_20)
target_compile_options(roamly_compiler INTERFACE -Wall -Wextra -Wpedantic -Wconversion)
if(ROAMLY_WARNINGS_AS_ERRORS)
  target_compile_options(roamly_compiler INTERFACE -Werror)
endif()
if(ROAMLY_SANITIZE)
  target_compile_options(roamly_compiler INTERFACE
    -fsanitize=${ROAMLY_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(roamly_compiler INTERFACE -fsanitize=${ROAMLY_SANITIZE})
endif()

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()
