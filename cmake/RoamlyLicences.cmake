# What the program owes to others, as a text that `roamly --version --licences` shows: made from the manifest of the
# packages that the build takes data from. What only a benchmark compares with does not come along.
file(READ "${PROJECT_SOURCE_DIR}/data/manifest.json" manifest)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/data/manifest.json")
string(JSON count LENGTH "${manifest}" packages)
math(EXPR last "${count} - 1")
set(licences "Data and libraries that come with Roamly:\n")
foreach(index RANGE ${last})
  foreach(member name version attribution)
    string(JSON ${member} GET "${manifest}" packages ${index} ${member})
  endforeach()
  string(JSON group GET "${manifest}" packages ${index} group)
  if(NOT group STREQUAL "comparison")
    string(APPEND licences "  ${attribution} (${name} ${version})\n")
  endif()
endforeach()
string(APPEND licences
  "  Perceived quality: BRISQUE as trained on the LIVE database, OpenCV, Apache-2.0 (Debian's opencv-data)\n")
string(APPEND licences "\nLibraries of the system, under their own licences: Qt, FFmpeg with libx264 and libx265, libvips, LibRaw,\n"
  "Exiv2, libde265, Little CMS, brotli, GLib, zimg, libcurl, libsecret, JSON for Modern C++.\n")
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/share/roamly/licences.txt" CONTENT "${licences}" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/share/roamly/licences.txt" DESTINATION share/roamly)
