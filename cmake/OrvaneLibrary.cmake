# orvane_library(NAME FOLDER... [USES lower libraries] [FOREIGN foreign libraries])
#
# One static library from every .cpp file that lies in the named folders of src/ (not below them).
# A new file joins its library by lying in its folder. USES is the whole table of arrows: a library
# sees the headers of src/ through it, and foreign headers only when FOREIGN names their library.

add_library(orvane_flags INTERFACE)
target_compile_features(orvane_flags INTERFACE cxx_std_20)
target_include_directories(orvane_flags INTERFACE "${PROJECT_SOURCE_DIR}/src")
target_compile_options(orvane_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow)
if(ORVANE_WERROR)
  target_compile_options(orvane_flags INTERFACE -Werror)
endif()
if(ORVANE_SANITIZE)
  target_compile_options(orvane_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                                -fno-omit-frame-pointer)
  target_link_options(orvane_flags INTERFACE -fsanitize=address,undefined)
endif()
if(ORVANE_SANITIZE_THREADS)
  target_compile_options(orvane_flags INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(orvane_flags INTERFACE -fsanitize=thread)
endif()

if(ORVANE_FUZZ)
  target_compile_options(orvane_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

function(orvane_library name)
  cmake_parse_arguments(arg "" "" "USES;FOREIGN" ${ARGN})
  set(sources "")
  foreach(folder IN LISTS arg_UNPARSED_ARGUMENTS)
    file(GLOB found CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp" "${PROJECT_SOURCE_DIR}/src/${folder}/*.h")
    list(APPEND sources ${found})
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")  # A program's entry belongs to the program.
  endforeach()
  if(NOT sources)
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE orvane_flags ${arg_USES})
    return()
  endif()
  add_library(${name} STATIC ${sources})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  target_link_libraries(${name} PUBLIC orvane_flags ${arg_USES} PRIVATE ${arg_FOREIGN})
endfunction()
