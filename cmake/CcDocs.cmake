# The manual and the reference: section 1 from the tools, 3 from the headers, 5 from docs/.
# `cmake --build BUILD --target docs` makes man/ and html/ in the build's folder.

option(COMMON_CORE_DOCS "Make and install the manual with the rest" OFF)
find_program(CC_DOXYGEN doxygen)
find_package(Python3 COMPONENTS Interpreter)
if(NOT CC_DOXYGEN OR NOT Python3_FOUND OR NOT TARGET cclng)
  if(COMMON_CORE_DOCS)
    message(FATAL_ERROR "The manual needs doxygen and python3")
  endif()
  return()
endif()

list(JOIN CC_RUN " " run)
set(CC_MANUAL "${PROJECT_SOURCE_DIR}/tools/man/make.py" --version ${PROJECT_VERSION})
foreach(tool IN ITEMS cclng ccml)
  if(TARGET ${tool})
    list(APPEND CC_MANUAL --tool "${tool}=${run} $<TARGET_FILE:${tool}>")
  endif()
endforeach()

set(all "")
if(COMMON_CORE_DOCS)
  set(all ALL)
  list(APPEND CC_MANUAL --gzip)
endif()
add_custom_target(
  docs ${all}
  COMMAND Python3::Interpreter -B ${CC_MANUAL} --output "${PROJECT_BINARY_DIR}/man" --html
          "${PROJECT_BINARY_DIR}/html"
  COMMENT "Making the manual and the reference"
  VERBATIM)
foreach(tool IN ITEMS cclng ccml)
  if(TARGET ${tool})
    add_dependencies(docs ${tool})
  endif()
endforeach()

if(COMMON_CORE_DOCS AND COMMON_CORE_INSTALL)
  install(DIRECTORY "${PROJECT_BINARY_DIR}/man/man1" "${PROJECT_BINARY_DIR}/man/man5"
          DESTINATION "${CMAKE_INSTALL_MANDIR}" COMPONENT tools)
  install(DIRECTORY "${PROJECT_BINARY_DIR}/man/man3" DESTINATION "${CMAKE_INSTALL_MANDIR}"
          COMPONENT dev)
endif()
