# qorgen_optional_library(target NAME module): a library of the host that a service loads at its first use. The sources of
# the target see the headers of the pkg-config module, and as QORGEN_SONAME_<NAME> the soname of the very library that
# belongs to them; nothing is linked.
function(qorgen_optional_library target name module)
  pkg_check_modules(QORGEN_${name} REQUIRED IMPORTED_TARGET ${module})
  list(GET QORGEN_${name}_LINK_LIBRARIES 0 file)
  execute_process(COMMAND ${CMAKE_OBJDUMP} -p ${file} OUTPUT_VARIABLE dump ERROR_QUIET)
  if(NOT dump MATCHES "SONAME +([^ \n]+)")
    message(FATAL_ERROR "qorgen loads ${module} while it runs and needs its shared library; ${file} is none.")
  endif()
  target_compile_definitions(${target} PRIVATE QORGEN_SONAME_${name}="${CMAKE_MATCH_1}")
  target_include_directories(${target} SYSTEM PRIVATE ${QORGEN_${name}_INCLUDE_DIRS})
  target_compile_options(${target} PRIVATE ${QORGEN_${name}_CFLAGS_OTHER})
endfunction()
