# Names of tests begin with the folder of the build, as in "m32.core.Bag.grows", so that one run
# of ctest over several builds tells them apart.
#
# add_cc_test(NAME name SOURCES source... [INTERNAL] [FAULTY] [LIBRARIES library...])
#
# A program of tests whose cases ctest runs one by one. It links the shared library as a
# client does; with INTERNAL it links the folders' static libraries instead and sees the
# internal headers too. With FAULTY too its sources bring a platform layer of their own, and
# ctest runs it as a whole, since it sums up what its cases did. So it does under valgrind, where
# each start of a program takes seconds.

include(GoogleTest)

# Where each case of a test is slow, long sweeps run every n-th only, see tests/support/stride.h.
set(CC_TEST_STRIDE 1)
if(COMMON_CORE_VALGRIND)
  set(CMAKE_CROSSCOMPILING_EMULATOR valgrind)
  set(CC_TEST_STRIDE 53)
elseif(COMMON_CORE_SANITIZE)
  set(CC_TEST_STRIDE 7)
endif()

# Seconds for a case, and for a whole program. Counters of what runs take most of the time.
set(CC_TIMEOUT 120)
set(CC_LONG_TIMEOUT 300)
if(COMMON_CORE_COVERAGE)
  set(CC_TIMEOUT 600)
  set(CC_LONG_TIMEOUT 1500)
endif()

cmake_path(GET PROJECT_BINARY_DIR FILENAME CC_BUILD_NAME)

function(add_cc_test)
  cmake_parse_arguments(PARSE_ARGV 0 arg "INTERNAL;FAULTY" "NAME" "SOURCES;LIBRARIES")
  string(REGEX REPLACE "_tests?$" "" folder "${arg_NAME}")
  add_executable(${arg_NAME} ${arg_SOURCES})
  set_target_properties(${arg_NAME} PROPERTIES UNITY_BUILD ${COMMON_CORE_UNITY_TESTS})
  target_link_libraries(${arg_NAME} PRIVATE cc_flags ${arg_LIBRARIES})
  if(arg_FAULTY)
    target_link_libraries(${arg_NAME} PRIVATE cc_internal_faulty cc_coverage)
  elseif(arg_INTERNAL)
    target_link_libraries(${arg_NAME} PRIVATE cc_internal)
  else()
    target_link_libraries(${arg_NAME} PRIVATE common_core)
  endif()
  target_link_libraries(${arg_NAME} PRIVATE test_support)
  target_compile_definitions(${arg_NAME} PRIVATE "CC_SOURCE_DIR=\"${PROJECT_SOURCE_DIR}/\""
                             "CC_BUILD_DIR=\"${PROJECT_BINARY_DIR}/\""
                             CC_TEST_STRIDE=${CC_TEST_STRIDE})
  if(arg_FAULTY OR COMMON_CORE_VALGRIND)
    set(environment "COMMON_CORE_ETC_DIR=${CC_LNG_DIR}")
    if(EXISTS /dev/shm)  # thousands of files are quicker made in memory
      list(APPEND environment TMPDIR=/dev/shm)
    endif()
    add_test(NAME ${CC_BUILD_NAME}.${folder} COMMAND ${arg_NAME})
    set_tests_properties(${CC_BUILD_NAME}.${folder} PROPERTIES TIMEOUT ${CC_LONG_TIMEOUT}
                         ENVIRONMENT "${environment}")
    return()
  endif()
  gtest_discover_tests(
    ${arg_NAME}
    DISCOVERY_MODE PRE_TEST
    TEST_PREFIX "${CC_BUILD_NAME}.${folder}."
    PROPERTIES TIMEOUT ${CC_TIMEOUT} ENVIRONMENT "COMMON_CORE_ETC_DIR=${CC_LNG_DIR}")
endfunction()

# add_cc_script(name command...) makes a test of a command, told where everything is.
function(add_cc_script name)
  list(JOIN CC_RUN " " run)
  add_test(NAME ${CC_BUILD_NAME}.${name} COMMAND ${ARGN})
  set_property(
    TEST ${CC_BUILD_NAME}.${name}
    PROPERTY ENVIRONMENT "CC_SOURCE_DIR=${PROJECT_SOURCE_DIR}" "CC_BUILD_DIR=${PROJECT_BINARY_DIR}"
             "CC_BITS=${CC_BITS}" "CC_GETTEXTPO=${CC_GETTEXTPO}" "CC_RUN=${run}" "CCML=${ccml}" "CCLNG=${cclng}"
             "COMMON_CORE_ETC_DIR=${CC_LNG_DIR}")
  set_property(TEST ${CC_BUILD_NAME}.${name} PROPERTY TIMEOUT ${CC_TIMEOUT})
endfunction()
