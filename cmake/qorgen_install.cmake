# cmake --install: the shared library, the public headers, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS qorgen EXPORT qorgen_targets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
# What the umbrella header reaches is the public surface; the rest the library keeps to itself.
function(qorgen_reach header reached)
  set(found ${${reached}})
  if(NOT header IN_LIST found)
    list(APPEND found ${header})
    file(STRINGS ${PROJECT_SOURCE_DIR}/${header} lines REGEX "^[ \t]*#[ \t]*include[ \t]+\"qorgen/")
    foreach(line IN LISTS lines)
      string(REGEX REPLACE ".*\"(qorgen/[^\"]+)\".*" "\\1" next "${line}")
      qorgen_reach(${next} found)
    endforeach()
  endif()
  set(${reached} ${found} PARENT_SCOPE)
endfunction()
set(public_headers)
qorgen_reach(qorgen/qorgen.h public_headers)
foreach(header IN LISTS public_headers)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${header})
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder})
endforeach()
install(EXPORT qorgen_targets NAMESPACE qorgen:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qorgen)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/qorgen-config.cmake.in
                              ${PROJECT_BINARY_DIR}/qorgen-config.cmake
                              INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qorgen)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qorgen-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qorgen-config.cmake ${PROJECT_BINARY_DIR}/qorgen-config-version.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qorgen)

if(WIN32)
  # The compiler's run-time libraries are shared by the library and its clients: that is how an exception thrown in one
  # is caught by class in the other.
  foreach(runtime libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${runtime}
                    OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE)
    file(REAL_PATH "${file}" file)
    install(FILES ${file} DESTINATION ${CMAKE_INSTALL_BINDIR})
  endforeach()
else()
  configure_file(${PROJECT_SOURCE_DIR}/cmake/qorgen.pc.in ${PROJECT_BINARY_DIR}/qorgen.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/qorgen.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()

# cpack: an archive of what is installed.
if(PROJECT_IS_TOP_LEVEL)
  set(CPACK_PACKAGE_VENDOR qorGen)
  string(TOLOWER "${CMAKE_SYSTEM_NAME}" system)
  set(CPACK_PACKAGE_FILE_NAME qorgen-${PROJECT_VERSION}-${system}-${CMAKE_SYSTEM_PROCESSOR})
  if(WIN32)
    set(CPACK_GENERATOR ZIP)
  else()
    set(CPACK_GENERATOR TGZ)
  endif()
  set(CPACK_STRIP_FILES ON)
  include(CPack)
endif()
