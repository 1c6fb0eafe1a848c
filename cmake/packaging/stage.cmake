# Run by CPack when everything is installed into one folder for each component, and before packages are made of them.

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component})
  if(NOT component STREQUAL "dev")
    file(COPY ${CPACK_VARNEL_SHLIBS} DESTINATION ${root}/debian)  # CPack removes it where it looks for dependencies
  endif()
  file(GLOB_RECURSE pages ${root}/usr/share/man/*.[1-9])
  if(pages)
    execute_process(COMMAND gzip -9n ${pages} COMMAND_ERROR_IS_FATAL ANY)
  endif()
endforeach()
