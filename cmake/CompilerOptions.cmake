# Warnings and code generation of this project's own targets. Applied to each target as PRIVATE properties, so that
# neither a parent project nor a user of the installed package inherits them.

set(VARNEL_WARNINGS
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wcast-align -Wcast-qual
    -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wundef -Wunused -Wdouble-promotion)

function(varnel_compile_options target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_compile_options(${target} PRIVATE ${VARNEL_WARNINGS} -fno-semantic-interposition $<$<NOT:$<CONFIG:Debug>>:-O3>)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
endfunction()

# Makes a library export only what the version script in the target's own folder names. Calls within the library go
# straight to it: a program may take the place of what the host provides, which other libraries supply, not of parts.
function(varnel_export_only target script)
  get_target_property(kind ${target} TYPE)
  if(kind STREQUAL "SHARED_LIBRARY")
    set(path ${CMAKE_CURRENT_SOURCE_DIR}/${script})
    target_link_options(${target} PRIVATE LINKER:--version-script=${path} LINKER:--no-undefined
      LINKER:-Bsymbolic-functions)
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${path})
  endif()
endfunction()
