# The Debian packages, made by CPack from the components of cmake/CcInstall.cmake. They install
# into /usr and with their word size's library directory, so that both word sizes go side by side.

option(COMMON_CORE_PACKAGES "Prepare the Debian packages" OFF)
if(NOT COMMON_CORE_PACKAGES)
  return()
endif()

set(packages "${PROJECT_BINARY_DIR}/packages")
file(MAKE_DIRECTORY "${packages}")
set(CC_PACKAGE_runtime libcommon-core1)
set(CC_PACKAGE_dev libcommon-core-dev)
set(CC_PACKAGE_tools common-core-tools)
set(CC_MAINTAINER "common_core developers <common_core@packages.debian.org>")

# What every package says of itself: the change log in Debian's form, and the copyright.
execute_process(COMMAND git -C "${PROJECT_SOURCE_DIR}" log -1 --format=%cD
                OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
execute_process(
  COMMAND ${Python3_EXECUTABLE} "${PROJECT_SOURCE_DIR}/packaging/debian/changelog.py"
          "${PROJECT_VERSION}" "${CC_MAINTAINER}" "${date}"
  OUTPUT_FILE "${packages}/changelog" COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND gzip -9nf "${packages}/changelog" COMMAND_ERROR_IS_FATAL ANY)
foreach(component IN ITEMS runtime dev tools)
  install(FILES "${packages}/changelog.gz" "${PROJECT_SOURCE_DIR}/packaging/debian/copyright"
          DESTINATION "share/doc/${CC_PACKAGE_${component}}" COMPONENT ${component})
endforeach()

# The guide and the examples go with the headers, placed as the README links them.
file(GLOB guide "${PROJECT_SOURCE_DIR}/docs/*.md")
install(FILES "${PROJECT_SOURCE_DIR}/README.md"
        DESTINATION "share/doc/${CC_PACKAGE_dev}" COMPONENT dev)
install(FILES ${guide} DESTINATION "share/doc/${CC_PACKAGE_dev}/docs" COMPONENT dev)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples" DESTINATION "share/doc/${CC_PACKAGE_dev}"
        COMPONENT dev)

# The dictionaries are configuration: what an administrator changed in them stays.
list(TRANSFORM CC_DICTIONARIES PREPEND "${COMMON_CORE_DEFAULT_ETC_DIR}"
     OUTPUT_VARIABLE dictionaries)
list(JOIN dictionaries "\n" dictionaries)
file(WRITE "${packages}/conffiles" "${dictionaries}\n")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME common-core)
set(CPACK_PACKAGE_CONTACT "${CC_MAINTAINER}")
set(CPACK_PACKAGE_DIRECTORY "${packages}")
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_COMPONENTS_ALL runtime dev tools)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ
    GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY "=")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE amd64)
if(CC_BITS EQUAL 32)
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE i386)
endif()

# This CPack knows no field Multi-Arch; it writes a section as it stands, line break included.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${CC_PACKAGE_runtime})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION "libs\nMulti-Arch: same")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS ${CC_PACKAGE_tools})
set(CPACK_DEBIAN_RUNTIME_DEBUGINFO_PACKAGE ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    "${PROJECT_SOURCE_DIR}/packaging/debian/postinst"
    "${PROJECT_SOURCE_DIR}/packaging/debian/postrm"
    "${PROJECT_SOURCE_DIR}/packaging/debian/triggers")
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
    "building blocks of a program - shared library
Text and Unicode, a binary buffer, translatable messages, files whose
failures are such messages, a reader and a writer of a small markup format,
and detection of a running copy.
.
The texts of its messages come with ${CC_PACKAGE_tools}.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME ${CC_PACKAGE_dev})
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION "libdevel\nMulti-Arch: same")
set(CPACK_DEBIAN_DEV_DESCRIPTION
    "building blocks of a program - development files
Headers, the files by which CMake and pkg-config find the library, manual pages
of its interface, printers for gdb, the guide and the examples.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME ${CC_PACKAGE_tools})
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION "utils\nMulti-Arch: foreign")
set(CPACK_DEBIAN_TOOLS_DEBUGINFO_PACKAGE ON)
set(CPACK_DEBIAN_TOOLS_PACKAGE_CONTROL_EXTRA "${packages}/conffiles")
set(po "")
if(CC_GETTEXTPO)
  set(po " and turns them into PO files and back")
endif()
set(CPACK_DEBIAN_TOOLS_DESCRIPTION
    "building blocks of a program - tools and dictionaries
The dictionaries in which the library's messages are shown; ccml, which checks
and queries markup documents; cclng, which compiles and compares
dictionaries${po}.")

# Dependencies are found when the programs stand, just before the packages are made.
set(CPACK_PROJECT_CONFIG_FILE "${PROJECT_SOURCE_DIR}/packaging/debian/dependencies.cmake")
set(CPACK_CC_BINARY_DIR "${PROJECT_BINARY_DIR}")
set(CPACK_CC_COMPILER_VERSION "${CMAKE_CXX_COMPILER_VERSION}")
set(CPACK_CC_RUNTIME ${CC_PACKAGE_runtime})
include(CPack)
