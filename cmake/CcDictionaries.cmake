# The dictionaries: data/<name>.<language>.xml is checked against the reference language and
# compiled into <build>/lng/<name>.<language>.lng.

set(CC_REFERENCE_LANGUAGE eng)
set(CC_LNG_DIR "${PROJECT_BINARY_DIR}/lng/")
file(GLOB documents CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/data/*.xml")
if(NOT TARGET cclng OR NOT documents)
  return()
endif()

file(MAKE_DIRECTORY "${CC_LNG_DIR}")
set(outputs "")
foreach(document IN LISTS documents)
  cmake_path(GET document FILENAME file)
  if(NOT file MATCHES "^([a-z0-9_]+)\\.([a-z]+)\\.xml$")
    continue()
  endif()
  set(reference "${PROJECT_SOURCE_DIR}/data/${CMAKE_MATCH_1}.${CC_REFERENCE_LANGUAGE}.xml")
  set(output "${CC_LNG_DIR}${CMAKE_MATCH_1}.${CMAKE_MATCH_2}.lng")
  add_custom_command(
    OUTPUT "${output}"
    COMMAND ${CC_RUN} $<TARGET_FILE:cclng> check --reference "${reference}" "${document}"
    COMMAND ${CC_RUN} $<TARGET_FILE:cclng> compile "${document}" -o "${output}"
    DEPENDS cclng "${document}" "${reference}"
    COMMENT "Checking and compiling dictionary ${file}"
    VERBATIM)
  list(APPEND outputs "${output}")
endforeach()
add_custom_target(dictionaries ALL DEPENDS ${outputs})
