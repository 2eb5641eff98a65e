# One place for the warning policy of every target of the project.
function(pde_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
  if(PDE_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# libcups' PPD API and OpenSSL's low-level AES API are deprecated upstream but
# are the interfaces this project is written against. Silence those two
# deprecations in the sources that include them, and nowhere else.
# Sources that a subdirectory adds to a target of another directory name that
# target, since source properties are seen by the targets of one directory:
# pde_allow_deprecated_apis(TARGET billingcode file.cpp)
function(pde_allow_deprecated_apis)
  cmake_parse_arguments(ARG "" "TARGET" "" ${ARGN})
  set(scope)
  if(ARG_TARGET)
    set(scope TARGET_DIRECTORY ${ARG_TARGET})
  endif()
  set_source_files_properties(${ARG_UNPARSED_ARGUMENTS} ${scope}
    PROPERTIES COMPILE_OPTIONS "-Wno-deprecated-declarations")
endfunction()
