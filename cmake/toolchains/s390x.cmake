set(triplet s390x-linux-gnu)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
