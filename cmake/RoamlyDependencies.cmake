# SPDX-FileCopyrightText: the Roamly developers
# SPDX-License-Identifier: GPL-3.0-or-later

# Every foreign library in one place. A module links what it needs, privately.
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets DBus Svg Multimedia)

pkg_check_modules(vips REQUIRED IMPORTED_TARGET vips)
pkg_check_modules(libraw REQUIRED IMPORTED_TARGET libraw_r)
pkg_check_modules(exiv2 REQUIRED IMPORTED_TARGET exiv2)
pkg_check_modules(libde265 REQUIRED IMPORTED_TARGET libde265)
pkg_check_modules(lcms2 REQUIRED IMPORTED_TARGET lcms2)
pkg_check_modules(brotli REQUIRED IMPORTED_TARGET libbrotlidec)
pkg_check_modules(gio REQUIRED IMPORTED_TARGET gio-2.0)
pkg_check_modules(curl REQUIRED IMPORTED_TARGET libcurl)
pkg_check_modules(secret REQUIRED IMPORTED_TARGET libsecret-1)
pkg_check_modules(zimg REQUIRED IMPORTED_TARGET zimg)
pkg_check_modules(ffmpeg REQUIRED IMPORTED_TARGET libavformat libavcodec libavutil libswresample)

include(RoamlyVision)

if(ROAMLY_BUILD_TESTS)
  find_package(GTest REQUIRED)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
  include(GoogleTest)
endif()
