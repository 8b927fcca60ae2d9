# What `cmake --install` puts into a prefix, and the Debian package `cpack` makes of it:
#   include/qvr/*.h                              the public headers
#   lib/libqvrcatalog.a (or .so with BUILD_SHARED_LIBS=ON)
#   bin/<tool>                                   every program under tools/
#   lib/cmake/qvrcatalog/                        find_package(qvrcatalog): qvrcatalog::qvrcatalog
#   lib/pkgconfig/qvrcatalog.pc                  pkg-config qvrcatalog
include(CMakePackageConfigHelpers)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/qvr TYPE INCLUDE FILES_MATCHING PATTERN "*.h")
install(TARGETS qvrcatalog EXPORT qvrcatalogTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(QVR_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/qvrcatalog)
install(EXPORT qvrcatalogTargets NAMESPACE qvrcatalog:: DESTINATION ${QVR_CMAKE_DIR})
get_target_property(QVR_LIBRARY_TYPE qvrcatalog TYPE)
string(COMPARE EQUAL "${QVR_LIBRARY_TYPE}" STATIC_LIBRARY QVR_STATIC_LIBRARY)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/qvrcatalogConfig.cmake.in
  ${PROJECT_BINARY_DIR}/qvrcatalogConfig.cmake INSTALL_DESTINATION ${QVR_CMAKE_DIR})
# Before 1.0 a minor version may change the interface, so only the same minor version matches.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qvrcatalogConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qvrcatalogConfig.cmake
  ${PROJECT_BINARY_DIR}/qvrcatalogConfigVersion.cmake DESTINATION ${QVR_CMAKE_DIR})

# The pkg-config file names the prefix it was installed to, which `cmake --install --prefix` and
# cpack choose only at install time: the file is written then, into the install tree itself.
set(QVR_PC_PREFIX "@CMAKE_INSTALL_PREFIX@")
configure_file(${CMAKE_CURRENT_LIST_DIR}/qvrcatalog.pc.in ${PROJECT_BINARY_DIR}/qvrcatalog.pc.in @ONLY)
install(CODE "
  set(pc \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig/qvrcatalog.pc\")
  message(STATUS \"Installing: \${pc}\")
  configure_file(\"${PROJECT_BINARY_DIR}/qvrcatalog.pc.in\" \"\${pc}\" @ONLY)
  list(APPEND CMAKE_INSTALL_MANIFEST_FILES \"\${pc}\")")

# The Debian package: library, headers and tools in one, depending on the runtime libraries of
# libxml2 and of the ICU the build found. Building against the static library also needs their
# development packages, which the package recommends.
if(PROJECT_IS_TOP_LEVEL)
  string(REGEX MATCH "^[0-9]+" QVR_ICU_MAJOR "${ICU_VERSION}")
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGE_NAME qvrcatalog)
  set(CPACK_PACKAGE_CONTACT "qvrcatalog maintainers <qvrcatalog@localhost>")
  set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
      "object model over catalogs of manufactured parts and their tables")
  set(CPACK_PACKAGE_DESCRIPTION
      "The C++20 library with its headers, CMake package and pkg-config file, and its tools.")
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
  set(CPACK_STRIP_FILES ON) # the tools without their debugging information
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libxml2-dev, libicu-dev, pkg-config")
  # dpkg-shlibdeps (from dpkg-dev) reads the dependencies off the tools, with their versions and
  # the C and C++ runtimes; without it they are named here.
  find_program(QVR_DPKG_SHLIBDEPS dpkg-shlibdeps)
  if(QVR_DPKG_SHLIBDEPS)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    # A shared library is the package's own: the tools' need of it is no outside dependency.
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src)
  else()
    set(CPACK_DEBIAN_PACKAGE_DEPENDS "libxml2 (>= 2.9), libicu${QVR_ICU_MAJOR}")
  endif()
  include(CPack)
endif()
