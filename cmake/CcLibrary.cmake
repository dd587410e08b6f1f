# The library: one static library per folder of sources, for the tests of internal code, and
# the shared library made of the same objects, for everybody else.

set(CC_FOLDERS platform core unicode loc files markup process)

# libpaths, the small library that knows the directories.
file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/platform/libpaths/*.cpp")
set(CC_PATHS_TARGET "")
if(sources)
  add_library(paths SHARED ${sources})
  set_target_properties(paths PROPERTIES VERSION ${PROJECT_VERSION}
                        SOVERSION ${PROJECT_VERSION_MAJOR})
  add_library(common_core::paths ALIAS paths)
  target_include_directories(paths PUBLIC
                             "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/platform/libpaths>")
  target_include_directories(paths PRIVATE "${PROJECT_SOURCE_DIR}/include"
                             "${PROJECT_SOURCE_DIR}")
  target_compile_definitions(
    paths PRIVATE "COMMON_CORE_DEFAULT_ETC_DIR=\"${COMMON_CORE_DEFAULT_ETC_DIR}\""
                  "COMMON_CORE_DEFAULT_DATA_DIR=\"${COMMON_CORE_DEFAULT_DATA_DIR}\"")
  target_link_libraries(paths PRIVATE cc_flags)
  set(CC_PATHS_TARGET paths)
endif()

set(CC_STATIC_LIBRARIES "")
set(objects "")
foreach(folder IN LISTS CC_FOLDERS)
  file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.cpp")
  if(sources)
    add_library(cc_${folder} STATIC ${sources})
    target_include_directories(cc_${folder} PRIVATE "${PROJECT_SOURCE_DIR}/include"
                               "${PROJECT_SOURCE_DIR}")
    target_link_libraries(cc_${folder} PRIVATE cc_flags cc_coverage ${CC_PATHS_TARGET})
    # A short function's speed depends on how it lies in cache lines; so its neighbours do not count.
    target_compile_options(cc_${folder} PRIVATE -falign-functions=64)
    list(APPEND CC_STATIC_LIBRARIES cc_${folder})
    list(APPEND objects $<TARGET_OBJECTS:cc_${folder}>)
  endif()
endforeach()

# What tests of internal code link: all folders, in whatever order they need each other.
if(CC_STATIC_LIBRARIES)
  add_library(cc_internal INTERFACE)
  target_include_directories(cc_internal INTERFACE "${PROJECT_SOURCE_DIR}/include"
                             "${PROJECT_SOURCE_DIR}")
  list(JOIN CC_STATIC_LIBRARIES "," group)
  target_link_libraries(cc_internal INTERFACE "$<LINK_GROUP:RESCAN,${group}>"
                        ${CC_PATHS_TARGET})

  # The same for programs that bring a platform layer of their own.
  set(group ${CC_STATIC_LIBRARIES})
  list(REMOVE_ITEM group cc_platform)
  list(JOIN group "," group)
  add_library(cc_internal_faulty INTERFACE)
  target_include_directories(cc_internal_faulty INTERFACE "${PROJECT_SOURCE_DIR}/include"
                             "${PROJECT_SOURCE_DIR}")
  target_link_libraries(cc_internal_faulty INTERFACE "$<LINK_GROUP:RESCAN,${group}>"
                        ${CC_PATHS_TARGET})

  add_library(common_core SHARED ${objects})
  add_library(common_core::common_core ALIAS common_core)
  set_target_properties(common_core PROPERTIES VERSION ${PROJECT_VERSION} LINKER_LANGUAGE CXX
                        SOVERSION ${PROJECT_VERSION_MAJOR})
  target_include_directories(common_core PUBLIC
                             "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>")
  target_compile_features(common_core INTERFACE cxx_std_17)
  target_link_libraries(common_core PRIVATE cc_coverage ${CC_PATHS_TARGET})
endif()

set(map "${PROJECT_SOURCE_DIR}/packaging/common_core.map")
foreach(library IN ITEMS common_core paths)
  if(TARGET ${library})
    set_target_properties(${library} PROPERTIES LINK_DEPENDS "${map}")
    target_link_options(${library} PRIVATE "-Wl,--version-script=${map}" -Wl,-z,relro,-z,now
                        -Wl,-z,noexecstack -Wl,-Bsymbolic-functions)
    # Clang keeps the sanitizer's runtime in the program, so the library's references stay open.
    if(NOT (COMMON_CORE_SANITIZE AND CMAKE_CXX_COMPILER_ID MATCHES Clang))
      target_link_options(${library} PRIVATE -Wl,--no-undefined)
    endif()
  endif()
endforeach()
