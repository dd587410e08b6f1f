# The dictionaries: <name>.<language>.xml is checked against the reference language and compiled
# into <build>/lng/<name>.<language>.lng. An example with a dictionary of its own also gets the
# C++ record of it, as "<name>_loc.h".

set(CC_REFERENCE_LANGUAGE eng)
set(CC_LNG_DIR "${PROJECT_BINARY_DIR}/lng/")
if(NOT TARGET cclng)
  return()
endif()
set(cclng_command ${CC_RUN} $<TARGET_FILE:cclng>)

# Adds the commands for the documents in `folder`, and the outputs to the list `outputs`.
function(cc_compile_dictionaries folder)
  file(GLOB documents CONFIGURE_DEPENDS "${folder}/*.xml")
  foreach(document IN LISTS documents)
    cmake_path(GET document FILENAME file)
    if(NOT file MATCHES "^([a-z0-9_]+)\\.([a-z]+)\\.xml$")
      continue()
    endif()
    set(reference "${folder}/${CMAKE_MATCH_1}.${CC_REFERENCE_LANGUAGE}.xml")
    set(output "${CC_LNG_DIR}${CMAKE_MATCH_1}.${CMAKE_MATCH_2}.lng")
    add_custom_command(
      OUTPUT "${output}"
      COMMAND ${cclng_command} check --reference "${reference}" "${document}"
      COMMAND ${cclng_command} compile "${document}" -o "${output}"
      DEPENDS cclng "${document}" "${reference}"
      COMMENT "Checking and compiling dictionary ${file}"
      VERBATIM)
    list(APPEND outputs "${output}")
  endforeach()
  set(outputs "${outputs}" PARENT_SCOPE)
endfunction()

file(MAKE_DIRECTORY "${CC_LNG_DIR}")
set(outputs "")
cc_compile_dictionaries("${PROJECT_SOURCE_DIR}/data")

# Gives a program the C++ record of its own dictionary.
function(cc_dictionary_record target document)
  cmake_path(GET document STEM name)
  set(generated "${PROJECT_BINARY_DIR}/generated/${name}")
  file(MAKE_DIRECTORY "${generated}")
  add_custom_command(
    OUTPUT "${generated}/${name}_loc.h"
    COMMAND ${cclng_command} header "${document}" -o "${generated}/${name}_loc.h"
    DEPENDS cclng "${document}"
    COMMENT "Writing the record of dictionary ${name}"
    VERBATIM)
  target_sources(${target} PRIVATE "${generated}/${name}_loc.h")
  target_include_directories(${target} PRIVATE "${generated}")
  set(outputs "${outputs}" "${generated}/${name}_loc.h" PARENT_SCOPE)
endfunction()

if(TARGET ccml)
  cc_dictionary_record(ccml "${PROJECT_SOURCE_DIR}/data/ccml.${CC_REFERENCE_LANGUAGE}.xml")
endif()
foreach(stem IN LISTS CC_EXAMPLES)
  set(folder "${PROJECT_SOURCE_DIR}/examples/${stem}")
  cc_compile_dictionaries("${folder}")
  set(document "${folder}/${stem}.${CC_REFERENCE_LANGUAGE}.xml")
  if(EXISTS "${document}")
    cc_dictionary_record(example_${stem} "${document}")
  endif()
endforeach()
add_custom_target(dictionaries ALL DEPENDS ${outputs})
