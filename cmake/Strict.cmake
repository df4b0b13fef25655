# Warnings are errors in our own code on both compilers.
function(qv_strict target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Werror)
endfunction()
