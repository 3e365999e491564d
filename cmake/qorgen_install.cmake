# cmake --install: the shared library, the public headers, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS qorgen EXPORT qorgen_targets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
# Everything but what the library keeps to itself: sources of a host, inner headers, and the platform services whose
# functions are not exported (a client on Windows has the system's own, on Linux the public classes).
install(DIRECTORY ${PROJECT_SOURCE_DIR}/qorgen DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        FILES_MATCHING PATTERN "*.h"
        PATTERN "internal" EXCLUDE
        PATTERN "platform/linux" EXCLUDE
        PATTERN "platform/windows" EXCLUDE
        PATTERN "platform/crt.h" EXCLUDE)
install(EXPORT qorgen_targets NAMESPACE qorgen:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qorgen)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/qorgen-config.cmake.in
                              ${PROJECT_BINARY_DIR}/qorgen-config.cmake
                              INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qorgen)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qorgen-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qorgen-config.cmake ${PROJECT_BINARY_DIR}/qorgen-config-version.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qorgen)

if(NOT WIN32)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/qorgen.pc.in ${PROJECT_BINARY_DIR}/qorgen.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/qorgen.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()
