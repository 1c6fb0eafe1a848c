# Cross-compiles for another architecture of Debian: each other file in this folder names one. Its libraries are where
# scripts/check-architectures unpacks them; its programs run under emulation.
cmake_path(GET CMAKE_PARENT_LIST_FILE STEM architecture)
cmake_path(SET root NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../../build/architectures/${architecture}/root)
string(REGEX MATCH "^[^-]+" machine ${triplet})
string(REPLACE i686 i386 CMAKE_LIBRARY_ARCHITECTURE ${triplet})
string(REPLACE i686 i386 emulated ${machine})

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${machine})
set(CMAKE_CXX_COMPILER ${triplet}-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${emulated} -L ${root})
set(CMAKE_FIND_ROOT_PATH ${root})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
foreach(kind INCLUDE LIBRARY PACKAGE)
  set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()
set(ENV{PKG_CONFIG_LIBDIR} ${root}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${root})
