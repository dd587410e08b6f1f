# The flags of every target of this project, in one interface library.

add_library(cc_flags INTERFACE)
target_compile_options(cc_flags INTERFACE -Wall -Wextra -Wconversion -Wshadow
                       $<$<BOOL:${COMMON_CORE_WERROR}>:-Werror>)

# No path of this machine gets into a binary; the same sources give the same bytes anywhere.
add_compile_options("-ffile-prefix-map=${PROJECT_SOURCE_DIR}=."
                    "-ffile-prefix-map=${PROJECT_BINARY_DIR}=./build")

if(COMMON_CORE_SANITIZE)
  add_compile_options("-fsanitize=${COMMON_CORE_SANITIZE}" -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options("-fsanitize=${COMMON_CORE_SANITIZE}")
endif()

# Counters of what runs; for the library alone, see cmake/CcLibrary.cmake. Inlining and jumps that
# skip a test wait until the counters are in, so that each branch of the sources is counted once.
add_library(cc_coverage INTERFACE)
if(COMMON_CORE_COVERAGE)
  target_compile_options(cc_coverage INTERFACE --coverage -fprofile-update=atomic
                         -fno-early-inlining -fno-thread-jumps)
  target_link_options(cc_coverage INTERFACE --coverage)
endif()
