# Compile options of our own targets. `qorgen_own_code(target)` is applied to the library, the tests, the examples and
# the benchmarks; nothing of it reaches a client of the installed package.
function(qorgen_own_code target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wshadow)
  if(QORGEN_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# A program whose arguments and output are UTF-8 on every host, and whose lines end in LF on the console.
function(qorgen_utf8_program target)
  if(WIN32)
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/qorgen/platform/windows/program/utf8_main.cpp)
    target_compile_definitions(${target} PRIVATE main=program_main)
    target_link_options(${target} PRIVATE -municode)
  endif()
endfunction()

# The sanitizers belong to every object of a build, third-party test sources included.
if(QORGEN_SANITIZE)
  add_compile_options(-fsanitize=${QORGEN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${QORGEN_SANITIZE})
endif()
