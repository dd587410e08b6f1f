# What `cmake --install` puts where. Components: runtime (the libraries), dev (headers and what
# finds them), tools (programs and dictionaries); the Debian packages are made of the same.

include(CMakePackageConfigHelpers)
if(NOT TARGET common_core OR NOT TARGET paths)
  return()
endif()

# In a directory that the loader does not search, the files find each other by their places.
set(libdir "${CMAKE_INSTALL_FULL_LIBDIR}")
if(NOT libdir IN_LIST CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES AND NOT libdir MATCHES "^/usr/lib")
  cmake_path(RELATIVE_PATH libdir BASE_DIRECTORY "${CMAKE_INSTALL_FULL_BINDIR}"
             OUTPUT_VARIABLE from_bin)
  set_target_properties(common_core paths PROPERTIES INSTALL_RPATH "$ORIGIN")
  foreach(tool IN ITEMS cclng ccml)
    if(TARGET ${tool})
      set_target_properties(${tool} PROPERTIES INSTALL_RPATH "$ORIGIN/${from_bin}")
    endif()
  endforeach()
endif()

# Libraries, headers, and the files by which CMake and pkg-config find them.
set(headers "${CMAKE_INSTALL_INCLUDEDIR}/common_core")
set(config "${CMAKE_INSTALL_LIBDIR}/cmake/common_core")
install(
  TARGETS common_core paths
  EXPORT common_coreTargets
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT dev
  INCLUDES DESTINATION "${headers}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/" DESTINATION "${headers}" COMPONENT dev
        FILES_MATCHING PATTERN "*.h")
install(FILES "${PROJECT_SOURCE_DIR}/platform/libpaths/libpaths.h" DESTINATION "${headers}"
        COMPONENT dev)

install(EXPORT common_coreTargets NAMESPACE common_core:: DESTINATION "${config}"
        COMPONENT dev)
configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/packaging/cmake/common_coreConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/packaging/common_coreConfig.cmake"
  INSTALL_DESTINATION "${config}" NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/packaging/common_coreConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/packaging/common_coreConfig.cmake"
              "${PROJECT_BINARY_DIR}/packaging/common_coreConfigVersion.cmake"
        DESTINATION "${config}" COMPONENT dev)

# The paths of the .pc file start from the prefix where they lie under it.
set(CC_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
foreach(directory IN ITEMS LIBDIR INCLUDEDIR)
  set(path "${CMAKE_INSTALL_${directory}}")
  cmake_path(IS_RELATIVE path relative)
  if(relative)
    string(PREPEND path "\${prefix}/")
  endif()
  set(CC_PC_${directory} "${path}")
endforeach()
configure_file("${PROJECT_SOURCE_DIR}/packaging/common_core.pc.in"
               "${PROJECT_BINARY_DIR}/packaging/common_core.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/packaging/common_core.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT dev)

# gdb loads a script that is called after the library's file, path included, by itself.
install(FILES "${PROJECT_SOURCE_DIR}/packaging/gdb/printers.py"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/gdb/auto-load${libdir}"
        RENAME "libcommon_core.so.${PROJECT_VERSION}-gdb.py" COMPONENT dev)

# The tools, what completes their command lines, and the dictionaries, which lie where libpaths
# looks for them.
foreach(tool IN ITEMS cclng ccml)
  if(TARGET ${tool})
    install(TARGETS ${tool} COMPONENT tools)
    install(FILES "${PROJECT_SOURCE_DIR}/packaging/completion/tools.bash"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions"
            RENAME ${tool} COMPONENT tools)
  endif()
endforeach()
file(GLOB CC_DICTIONARIES RELATIVE "${PROJECT_SOURCE_DIR}/data" CONFIGURE_DEPENDS
     "${PROJECT_SOURCE_DIR}/data/*.xml")
list(TRANSFORM CC_DICTIONARIES REPLACE "\\.xml$" ".lng")
list(TRANSFORM CC_DICTIONARIES PREPEND "${CC_LNG_DIR}" OUTPUT_VARIABLE files)
install(FILES ${files} DESTINATION "${COMMON_CORE_DEFAULT_ETC_DIR}" COMPONENT tools)
install(DIRECTORY DESTINATION "${COMMON_CORE_DEFAULT_DATA_DIR}" COMPONENT runtime)
