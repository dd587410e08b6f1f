# Where the kernel runs no 32-bit programs, the tests and tools of a 32-bit build run in an
# emulator. CC_RUN is what stands before the path of a program that the build itself runs.

if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND NOT DEFINED CMAKE_CROSSCOMPILING_EMULATOR)
  file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/CMakeFiles/run32.cpp"
       CONTENT "int main() { return 0; }\n")
  try_run(CC_RUN32_RESULT CC_RUN32_COMPILED "${CMAKE_BINARY_DIR}/CMakeFiles/run32"
          "${CMAKE_BINARY_DIR}/CMakeFiles/run32.cpp")
  if(NOT CC_RUN32_RESULT EQUAL 0)
    find_program(CC_QEMU_I386 qemu-i386)
    if(CC_QEMU_I386)
      message(STATUS "32-bit programs run in ${CC_QEMU_I386}")
      set(CMAKE_CROSSCOMPILING_EMULATOR "${CC_QEMU_I386}")
    else()
      message(WARNING "32-bit programs do not run here, and qemu-i386 is not installed")
    endif()
  endif()
endif()

# In the emulator the check for leaks never ends: it stops the program with system calls that the
# emulator does not have. Everything else that AddressSanitizer does works there. It reads its
# options from the environment of the emulator itself.
if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_CROSSCOMPILING_EMULATOR AND COMMON_CORE_SANITIZE MATCHES
                                                                     "address")
  set(script "${PROJECT_BINARY_DIR}/launchers/emulator")
  file(CONFIGURE OUTPUT "${script}" CONTENT
       "#!/bin/sh\nASAN_OPTIONS=detect_leaks=0 exec @CMAKE_CROSSCOMPILING_EMULATOR@ \"$@\"\n" @ONLY)
  file(CHMOD "${script}" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ
       GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${script}")
endif()
set(CC_RUN ${CMAKE_CROSSCOMPILING_EMULATOR})

# Sets `variable` to a path that starts `program` directly: its own, or that of a script that
# calls the emulator.
function(cc_launcher variable program)
  set(path "${PROJECT_BINARY_DIR}/${program}")
  if(CC_RUN)
    set(script "${PROJECT_BINARY_DIR}/launchers/${program}")
    file(CONFIGURE OUTPUT "${script}" CONTENT "#!/bin/sh\nexec @CC_RUN@ '@path@' \"$@\"\n"
         @ONLY)
    file(CHMOD "${script}" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ
         GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
    set(path "${script}")
  endif()
  set(${variable} "${path}" PARENT_SCOPE)
endfunction()
