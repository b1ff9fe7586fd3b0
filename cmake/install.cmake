# What `cmake --install` (and `make install PREFIX=...`) puts in place:
#   lib/libtabrix.so.3.5.4 with its SONAME link libtabrix.so.3 and libtabrix.so
#   lib/tabrix/modules/libqdsheet.so, beside the message library it loads
#   include/tabrix.h, include/tabrix/*.h, include/qdhost.h
#   bin/tabrix
#   lib/cmake/tabrix/: find_package(tabrix) gives the target tabrix::tabrix
#   lib/pkgconfig/tabrix.pc: pkg-config --cflags --libs tabrix
include(CMakePackageConfigHelpers)

set(TABRIX_MODULE_DIR "${CMAKE_INSTALL_LIBDIR}/tabrix/modules" CACHE STRING
  "Where the loadable module libqdsheet.so is installed, relative to the prefix")

install(TARGETS tabrix EXPORT tabrixTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES include/tabrix.h include/qdhost.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/tabrix DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h")

# The module finds its message library in its own directory.
set_target_properties(qdsheet PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS qdsheet qdnls LIBRARY DESTINATION ${TABRIX_MODULE_DIR})

set(_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tabrix)
install(EXPORT tabrixTargets NAMESPACE tabrix:: DESTINATION ${_cmake_dir})
configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/tabrixConfig.cmake.in
  ${CMAKE_BINARY_DIR}/tabrixConfig.cmake INSTALL_DESTINATION ${_cmake_dir}
  PATH_VARS TABRIX_MODULE_DIR)
# Releases of one major version keep the flat entry points and interfaces.
write_basic_package_version_file(${CMAKE_BINARY_DIR}/tabrixConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/tabrixConfig.cmake ${CMAKE_BINARY_DIR}/tabrixConfigVersion.cmake
  DESTINATION ${_cmake_dir})

configure_file(${CMAKE_SOURCE_DIR}/cmake/tabrix.pc.in ${CMAKE_BINARY_DIR}/tabrix.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/tabrix.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
