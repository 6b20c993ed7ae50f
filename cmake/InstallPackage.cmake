# How the libraries and the tool are installed: each library as a package that CMake's
# find_package and pkg-config find.  All paths inside are relative, so that an installed
# tree may be moved as a whole.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# tq_install_package(NAME LIBRARY target HEADERS folder [REQUIRES package...]
#                    DESCRIPTION text)
function(tq_install_package name)
  cmake_parse_arguments(ARG "" "LIBRARY;HEADERS;DESCRIPTION" "REQUIRES" ${ARGN})
  if(NOT TQBINNING_INSTALL)
    return()
  endif()
  # A library finds the one that it needs beside itself.
  set_target_properties(${ARG_LIBRARY} PROPERTIES INSTALL_RPATH "$ORIGIN")
  install(TARGETS ${ARG_LIBRARY} EXPORT ${name}Targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  install(DIRECTORY ${ARG_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

  set(folder ${CMAKE_INSTALL_LIBDIR}/cmake/${name})
  set(made ${CMAKE_CURRENT_BINARY_DIR})
  install(EXPORT ${name}Targets NAMESPACE tqbinning:: DESTINATION ${folder})
  set(dependencies "")
  foreach(package IN LISTS ARG_REQUIRES)
    string(APPEND dependencies "find_dependency(${package} ${PROJECT_VERSION})\n")
  endforeach()
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/package.cmake.in
    ${made}/${name}Config.cmake INSTALL_DESTINATION ${folder})
  write_basic_package_version_file(${made}/${name}ConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
  install(FILES ${made}/${name}Config.cmake ${made}/${name}ConfigVersion.cmake
    DESTINATION ${folder})

  file(RELATIVE_PATH up ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
  string(REGEX REPLACE "/$" "" up ${up})
  file(RELATIVE_PATH libraries ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
  file(RELATIVE_PATH headers ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
  string(REPLACE ";" ", " requires "${ARG_REQUIRES}")
  configure_file(${PROJECT_SOURCE_DIR}/cmake/package.pc.in ${made}/${name}.pc @ONLY)
  install(FILES ${made}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

# A program, which finds the libraries from where it stands.
function(tq_install_program target)
  if(NOT TQBINNING_INSTALL)
    return()
  endif()
  file(RELATIVE_PATH libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
  install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()
