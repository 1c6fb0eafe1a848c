# Warnings and code generation of this project's own targets. Applied to each target as PRIVATE properties, so that
# neither a parent project nor a user of the installed package inherits them, except for the size of off_t.

set(VARNEL_WARNINGS
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wcast-align -Wcast-qual
    -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wundef -Wunused -Wdouble-promotion)

option(VARNEL_HARDEN "Let compiler and linker add what keeps a defect from being used by an attacker" ON)

# A definition by the compiler or the user takes precedence.
if(VARNEL_HARDEN)
  include(CheckCXXCompilerFlag)
  include(CheckCXXSourceCompiles)
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
  check_cxx_compiler_flag(-fcf-protection=full VARNEL_HAS_CF_PROTECTION)
  set(CMAKE_REQUIRED_FLAGS -O2)
  check_cxx_source_compiles("
    #if defined(_FORTIFY_SOURCE) || defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    #error taken
    #endif
    int main() {}" VARNEL_MAY_FORTIFY)
  unset(CMAKE_REQUIRED_FLAGS)
  if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    set(VARNEL_MAY_FORTIFY OFF)  # not every sanitizer has a macro
  endif()
endif()

# Checked functions need an optimised build, and hide errors from the sanitizers.
function(varnel_harden target)
  if(NOT VARNEL_HARDEN)
    return()
  endif()
  target_compile_options(${target} PRIVATE
    -fstack-protector-strong
    $<$<BOOL:${VARNEL_HAS_CF_PROTECTION}>:-fcf-protection=full>
    $<$<AND:$<NOT:$<CONFIG:Debug>>,$<BOOL:${VARNEL_MAY_FORTIFY}>>:-D_FORTIFY_SOURCE=2>)
  target_link_options(${target} PRIVATE LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()

function(varnel_compile_options target)
  varnel_harden(${target})
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_compile_options(${target} PRIVATE ${VARNEL_WARNINGS})
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)  # files of more than 2 GiB; users must agree, for struct stat depends on it
    target_compile_definitions(${target} PUBLIC _FILE_OFFSET_BITS=64)
  endif()
endfunction()

# Costly optimisation, used for the libraries only.
function(varnel_optimise target)
  target_compile_options(${target} PRIVATE -fno-semantic-interposition $<$<NOT:$<CONFIG:Debug>>:-O3>)
endfunction()

# Makes a library export only the names in the version script of the target's folder. Calls within the library are bound
# to it: a program may replace the functions of the host, which are in another library, but not those of this one.
function(varnel_export_only target script)
  get_target_property(kind ${target} TYPE)
  if(kind STREQUAL "SHARED_LIBRARY")
    set(path ${CMAKE_CURRENT_SOURCE_DIR}/${script})
    target_link_options(${target} PRIVATE LINKER:--version-script=${path} LINKER:--no-undefined
      LINKER:-Bsymbolic-functions)
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${path})
  endif()
endfunction()
