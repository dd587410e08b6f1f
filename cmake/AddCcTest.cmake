# add_cc_test(NAME name SOURCES source... [INTERNAL] [LIBRARIES library...])
#
# A program of tests whose cases ctest runs one by one. It links the shared library as a
# client does; with INTERNAL it links the folders' static libraries instead and sees the
# internal headers too.

include(GoogleTest)

function(add_cc_test)
  cmake_parse_arguments(PARSE_ARGV 0 arg "INTERNAL" "NAME" "SOURCES;LIBRARIES")
  add_executable(${arg_NAME} ${arg_SOURCES})
  target_link_libraries(${arg_NAME} PRIVATE cc_flags ${arg_LIBRARIES})
  if(arg_INTERNAL)
    target_link_libraries(${arg_NAME} PRIVATE cc_internal)
  else()
    target_link_libraries(${arg_NAME} PRIVATE common_core)
  endif()
  if(TARGET test_support)
    target_link_libraries(${arg_NAME} PRIVATE test_support)
  endif()
  target_link_libraries(${arg_NAME} PRIVATE GTest::gtest_main)
  target_compile_definitions(${arg_NAME} PRIVATE "CC_SOURCE_DIR=\"${PROJECT_SOURCE_DIR}/\""
                             "CC_BUILD_DIR=\"${PROJECT_BINARY_DIR}/\"")
  gtest_discover_tests(
    ${arg_NAME}
    DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 120 ENVIRONMENT "COMMON_CORE_ETC_DIR=${CC_LNG_DIR}")
endfunction()
