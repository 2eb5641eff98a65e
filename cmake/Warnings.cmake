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
function(pde_allow_deprecated_apis)
  set_source_files_properties(${ARGN} PROPERTIES COMPILE_OPTIONS "-Wno-deprecated-declarations")
endfunction()
