set(triplet i686-linux-gnu)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
