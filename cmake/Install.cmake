# Components: one for each library and the command, and dev for what programs are built with.
include(CMakePackageConfigHelpers)

set(config_dir ${CMAKE_INSTALL_LIBDIR}/cmake/varnel_common)
set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/varnel_common)

function(varnel_install_library target component)
  install(TARGETS ${target} EXPORT varnel_common-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${component} NAMELINK_COMPONENT dev
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev
    FILE_SET HEADERS DESTINATION ${header_dir} COMPONENT dev)
endfunction()

varnel_install_library(varnel_common common)
varnel_install_library(varnel_tl1stream tl1stream)
if(VARNEL_PLATFORM STREQUAL "bundled")
  varnel_install_library(varnel_platform platform)
else()
  install(DIRECTORY platform/include/platform DESTINATION ${header_dir} COMPONENT dev)
endif()
install(EXPORT varnel_common-targets NAMESPACE varnel:: DESTINATION ${config_dir} COMPONENT dev)

if(VARNEL_BUILD_TOOLS)
  install(TARGETS varnel RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT varnel)
endif()

configure_package_config_file(cmake/varnel_common-config.cmake.in varnel_common-config.cmake
  INSTALL_DESTINATION ${config_dir})
write_basic_package_version_file(varnel_common-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/varnel_common-config.cmake
  ${PROJECT_BINARY_DIR}/varnel_common-config-version.cmake
  DESTINATION ${config_dir} COMPONENT dev)

file(RELATIVE_PATH to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
if(VARNEL_PLATFORM STREQUAL "bundled")
  set(platform_library " -lvarnel_platform")
endif()
# Shared libraries know themselves what they need, and none of it shows in the headers.
if(NOT BUILD_SHARED_LIBS)
  set(private_packages ACE)
  if(VARNEL_PLATFORM STREQUAL "bundled")
    string(APPEND private_packages " spdlog")
  endif()
endif()
configure_file(cmake/varnel_common.pc.in varnel_common.pc @ONLY)
configure_file(cmake/varnel_tl1stream.pc.in varnel_tl1stream.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/varnel_common.pc ${PROJECT_BINARY_DIR}/varnel_tl1stream.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
