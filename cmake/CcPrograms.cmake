# The tools and the examples. They see what a client sees: include/ and the shared library.

function(add_cc_program name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE cc_flags common_core)
  if(TARGET cc_tools_common)
    target_link_libraries(${name} PRIVATE cc_tools_common)
  endif()
endfunction()

if(NOT TARGET common_core)
  return()
endif()

file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tools/common/*.cpp")
if(sources)
  add_library(cc_tools_common STATIC ${sources})
  target_include_directories(cc_tools_common PUBLIC "${PROJECT_SOURCE_DIR}/tools/common")
  target_link_libraries(cc_tools_common PRIVATE cc_flags PUBLIC common_core)
  target_compile_definitions(cc_tools_common PUBLIC "CC_VERSION=\"${PROJECT_VERSION}\"")
endif()

foreach(tool IN ITEMS cclng ccml)
  file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tools/${tool}/*.cpp")
  if(sources)
    add_cc_program(${tool} ${sources})
  endif()
endforeach()

# A file is a program, a folder is a program of several files.
file(GLOB entries CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/examples/*.cpp"
     "${PROJECT_SOURCE_DIR}/examples/*/*.cpp")
set(CC_EXAMPLES "")
foreach(entry IN LISTS entries)
  cmake_path(RELATIVE_PATH entry BASE_DIRECTORY "${PROJECT_SOURCE_DIR}/examples"
             OUTPUT_VARIABLE relative)
  cmake_path(GET relative PARENT_PATH folder)
  cmake_path(GET relative STEM LAST_ONLY stem)
  if(folder)
    set(stem "${folder}")
  endif()
  list(APPEND CC_EXAMPLES ${stem})
  list(APPEND example_sources_${stem} "${entry}")
endforeach()
list(REMOVE_DUPLICATES CC_EXAMPLES)
foreach(stem IN LISTS CC_EXAMPLES)
  add_executable(example_${stem} ${example_sources_${stem}})
  target_link_libraries(example_${stem} PRIVATE cc_flags common_core)
endforeach()
