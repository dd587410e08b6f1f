# Read by CPack: what the packages depend on. The version of the C library is the highest that a
# symbol asks for; the C++ runtime is that of the compiler or later; gettext's library for PO files
# is needed where cclng was linked with it. (dpkg-shlibdeps would look at the libraries of the
# machine, which has those of the other word size only in strange places.)

function(cc_dependencies result)
  set(highest 2.2)
  set(others "")
  foreach(file IN LISTS ARGN)
    if(NOT EXISTS "${CPACK_CC_BINARY_DIR}/${file}")
      continue()
    endif()
    execute_process(COMMAND objdump -T "${CPACK_CC_BINARY_DIR}/${file}" OUTPUT_VARIABLE symbols
                    COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "GLIBC_[0-9.]+" versions "${symbols}")
    foreach(version IN LISTS versions)
      string(REPLACE "GLIBC_" "" version "${version}")
      if(version VERSION_GREATER highest)
        set(highest "${version}")
      endif()
    endforeach()
    execute_process(COMMAND objdump -p "${CPACK_CC_BINARY_DIR}/${file}" OUTPUT_VARIABLE needed
                    COMMAND_ERROR_IS_FATAL ANY)
    if(needed MATCHES "NEEDED +libgettextpo\\.so\\.0\n")
      set(others ", libgettextpo0 (>= 0.21)")
    endif()
  endforeach()
  string(REGEX MATCH "^[0-9]+" compiler "${CPACK_CC_COMPILER_VERSION}")
  set(${result}
      "libc6 (>= ${highest}), libgcc-s1 (>= 3.4), libstdc++6 (>= ${compiler})${others}"
      PARENT_SCOPE)
endfunction()

set(version "${CPACK_PACKAGE_VERSION}")
cc_dependencies(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "libcommon_core.so.${version}"
                "libpaths.so.${version}")
cc_dependencies(tools ccml cclng)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${CPACK_CC_RUNTIME} (= ${version}), ${tools}")
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "${CPACK_CC_RUNTIME} (= ${version})")
