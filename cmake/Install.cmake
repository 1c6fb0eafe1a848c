# Components: one for each library and the command, and dev with the files that are needed to build programs.
include(CMakePackageConfigHelpers)

set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/varnel_common)

function(varnel_install_library target component package)
  install(TARGETS ${target} EXPORT ${package}-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${component} NAMELINK_COMPONENT dev
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${package} COMPONENT dev)
endfunction()

varnel_install_library(varnel_common common varnel_common)
varnel_install_library(varnel_tl1 tl1 varnel_tl1)
if(VARNEL_PLATFORM STREQUAL "bundled")
  varnel_install_library(varnel_platform platform varnel_common)
else()
  install(DIRECTORY platform/include/platform DESTINATION ${header_dir} COMPONENT dev)
endif()

if(VARNEL_BUILD_TOOLS)
  install(TARGETS varnel RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT varnel)
endif()

foreach(package IN ITEMS varnel_common varnel_tl1)
  set(config_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${package})
  install(EXPORT ${package}-targets NAMESPACE varnel:: DESTINATION ${config_dir} COMPONENT dev)
  configure_package_config_file(cmake/${package}-config.cmake.in ${package}-config.cmake
    INSTALL_DESTINATION ${config_dir})
  write_basic_package_version_file(${package}-config-version.cmake COMPATIBILITY SameMajorVersion)
  install(FILES
    ${PROJECT_BINARY_DIR}/${package}-config.cmake
    ${PROJECT_BINARY_DIR}/${package}-config-version.cmake
    DESTINATION ${config_dir} COMPONENT dev)
endforeach()

file(RELATIVE_PATH to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
if(VARNEL_PLATFORM STREQUAL "bundled")
  set(platform_library " -lvarnel_platform")
endif()
# Shared libraries record their own dependencies, and the headers use none of them.
if(NOT BUILD_SHARED_LIBS)
  set(private_packages ACE)
  if(VARNEL_PLATFORM STREQUAL "bundled")
    string(APPEND private_packages " spdlog")
  endif()
endif()
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(large_files " -D_FILE_OFFSET_BITS=64")
endif()
configure_file(cmake/varnel_common.pc.in varnel_common.pc @ONLY)
configure_file(cmake/varnel_tl1.pc.in varnel_tl1.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/varnel_common.pc ${PROJECT_BINARY_DIR}/varnel_tl1.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
