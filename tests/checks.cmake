# Checks over sources, symbols and the installed package. They belong to the plain build: a sanitized library carries
# the sanitizer's own symbols and asks its clients for them.
set(checks ${CMAKE_CURRENT_SOURCE_DIR}/checks)
add_test(NAME check_layers COMMAND ${checks}/layers.sh ${PROJECT_SOURCE_DIR})
if(QORGEN_BUILD_EXAMPLES)
  add_test(NAME check_import_example COMMAND ${checks}/import_example.sh $<TARGET_FILE:qorgen_import_example>
                                             ${PROJECT_SOURCE_DIR} ${CMAKE_CROSSCOMPILING_EMULATOR})
  add_test(NAME check_reminder_example COMMAND ${checks}/reminder_example.sh $<TARGET_FILE:qorgen_reminder_example>
                                               ${PROJECT_SOURCE_DIR} ${CMAKE_CROSSCOMPILING_EMULATOR})
endif()
if(WIN32)
  add_test(NAME check_exports COMMAND ${checks}/exports.sh $<TARGET_FILE:qorgen>)
  add_test(NAME check_package COMMAND ${checks}/package_windows.sh ${PROJECT_BINARY_DIR} ${PROJECT_SOURCE_DIR})
elseif(NOT QORGEN_SANITIZE)
  add_test(NAME check_wide_symbols COMMAND ${checks}/wide_symbols.sh $<TARGET_FILE:qorgen>)
  add_test(NAME check_linked_libraries COMMAND ${checks}/linked_libraries.sh $<TARGET_FILE:qorgen>)
  file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/library_objects.txt
       CONTENT "$<JOIN:$<TARGET_OBJECTS:qorgen_objects>,\n>\n")
  add_test(NAME check_seam COMMAND ${checks}/seam.sh ${CMAKE_CURRENT_BINARY_DIR}/library_objects.txt
                                   ${PROJECT_SOURCE_DIR})
  add_test(NAME check_format COMMAND ${checks}/format.sh ${PROJECT_SOURCE_DIR})
  add_test(NAME check_package COMMAND ${checks}/package.sh ${PROJECT_BINARY_DIR} ${PROJECT_SOURCE_DIR}
                                      ${CMAKE_CXX_COMPILER})
  if(QORGEN_BUILD_EXAMPLES)
    add_test(NAME check_readme COMMAND ${checks}/readme.sh ${PROJECT_SOURCE_DIR} $<TARGET_FILE:qorgen_first_example>)
  endif()
endif()

# Every public header stands on its own. One that a source of the library begins with is shown to by that source; the
# others get a source each that includes nothing else.
get_target_property(library_sources qorgen_objects SOURCES)
set(begun_with)
foreach(source IN LISTS library_sources)
  file(STRINGS ${source} first LIMIT_COUNT 1 REGEX "^#include ")
  string(REGEX REPLACE "^#include \"(.*)\"$" "\\1" first "${first}")
  list(APPEND begun_with "${first}")
endforeach()
file(GLOB public_headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/qorgen/*.h
     ${PROJECT_SOURCE_DIR}/qorgen/*/*.h)
set(header_sources)
list(REMOVE_ITEM public_headers ${begun_with})
foreach(header IN LISTS public_headers)
  string(MAKE_C_IDENTIFIER "${header}" name)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/headers/${name}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "#include \"${header}\"\n#include \"${header}\"\n" @ONLY)
  list(APPEND header_sources ${source})
endforeach()
add_library(qorgen_header_tests OBJECT ${header_sources})
qorgen_own_code(qorgen_header_tests)
target_link_libraries(qorgen_header_tests PRIVATE qorgen)
