# Coverage for the libFuzzer targets (fuzz/). The libraries are compiled
# with -fsanitize=fuzzer-no-link, so that a fuzzer sees which branches of
# the code under test an input reached; the fuzz programs themselves get
# -fsanitize=fuzzer, which also brings libFuzzer's main. Test programs and
# the other executables stay as they are: the sanitizer runtime answers the
# coverage hooks of the libraries they link.

# Adds the coverage flag to every library defined in DIR and below it.
function(kordel_instrument_libraries dir)
  get_property(targets DIRECTORY ${dir} PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target ${targets})
    get_target_property(type ${target} TYPE)
    if(type MATCHES "^(STATIC|SHARED|MODULE|OBJECT)_LIBRARY$")
      target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
  endforeach()
  get_property(subdirs DIRECTORY ${dir} PROPERTY SUBDIRECTORIES)
  foreach(subdir ${subdirs})
    kordel_instrument_libraries(${subdir})
  endforeach()
endfunction()

# kordel_add_fuzzer(NAME SOURCES ... LIBS ...)
# One fuzz program: its own source file, and the sources of the code under
# test where that code is not a library of its own.
function(kordel_add_fuzzer name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC OFF)
  target_compile_options(${name} PRIVATE -fsanitize=fuzzer)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  target_link_libraries(${name} PRIVATE ${ARG_LIBS})
endfunction()
