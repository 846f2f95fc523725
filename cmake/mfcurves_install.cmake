# SPDX-License-Identifier: MIT
# What is installed, by component:
#   runtime      the shared library
#   development  headers, static library, packages for CMake and pkg-config
#   tool         the command-line tool
#   data         the design library and the sample curves
#   doc          the licence, the pages and the changes
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/mfcurves)
set(library_dir ${CMAKE_INSTALL_DATADIR}/mfcurves)

install(TARGETS mfcurves EXPORT mfcurvesTargets
  ARCHIVE COMPONENT development
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  RUNTIME COMPONENT runtime
  FILE_SET HEADERS COMPONENT development)
install(EXPORT mfcurvesTargets NAMESPACE mfcurves:: DESTINATION ${package_dir} COMPONENT development)

configure_package_config_file(
  ${CMAKE_CURRENT_LIST_DIR}/mfcurvesConfig.cmake.in ${PROJECT_BINARY_DIR}/mfcurvesConfig.cmake
  INSTALL_DESTINATION ${package_dir}
  PATH_VARS library_dir)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/mfcurvesConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/mfcurvesConfig.cmake
  ${PROJECT_BINARY_DIR}/mfcurvesConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT development)

# Programs that link the static library also need its dependencies. mfExport.h uses the
# definition.
if(BUILD_SHARED_LIBS)
  set(pc_requires "Requires.private: libxml-2.0")
  set(pc_definition " -DMFCURVES_SHARED")
else()
  set(pc_requires "Requires: libxml-2.0")
  set(pc_definition "")
endif()
file(RELATIVE_PATH pc_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")  # so that the prefix may be moved
configure_file(${CMAKE_CURRENT_LIST_DIR}/mfcurves.pc.in ${PROJECT_BINARY_DIR}/mfcurves.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/mfcurves.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

if(MFCURVES_TOOL)
  install(TARGETS mfcurve RUNTIME COMPONENT tool)
endif()

install(FILES share/mfcurves/SegmentTypes.txt DESTINATION ${library_dir} COMPONENT data)
install(DIRECTORY share/mfcurves/curves DESTINATION ${library_dir} COMPONENT data)

install(FILES LICENSE README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc FILES_MATCHING PATTERN "*.md" PATTERN "*.svg")
