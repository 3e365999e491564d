# Compile options of our own targets. `qorgen_own_code(target)` is applied to the library, the tests, the examples and
# the benchmarks; nothing of it reaches a client of the installed package.
function(qorgen_own_code target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wshadow)
  if(QORGEN_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# The sanitizers belong to every object of a build, third-party test sources included.
if(QORGEN_SANITIZE)
  add_compile_options(-fsanitize=${QORGEN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${QORGEN_SANITIZE})
endif()
