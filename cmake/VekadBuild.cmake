# Settings and helpers that every target shares.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE RelWithDebInfo)
endif()
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1")
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG") # as what is shipped

# What runs is gathered in one folder that can be copied elsewhere whole.
set(VEKAD_OUTPUT ${CMAKE_BINARY_DIR}/vekad)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${VEKAD_OUTPUT})
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${VEKAD_OUTPUT})
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_BUILD_RPATH "$ORIGIN")

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
endif()

find_program(MOLD mold)
if(MOLD)
  add_link_options(-fuse-ld=mold)
endif()

add_compile_options(-Wall -Wextra -Wno-unused-parameter -Wno-missing-field-initializers -Werror=return-type)
option(VEKAD_WERROR "treat warnings as errors" ON)
if(VEKAD_WERROR)
  add_compile_options(-Werror)
endif()

set(VEKAD_SANITIZE "" CACHE STRING "sanitizers to build with, as in address,undefined")
if(VEKAD_SANITIZE)
  add_compile_options(-fsanitize=${VEKAD_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=${VEKAD_SANITIZE})
endif()

# Adds the C++ sources of the given folders, each without its subfolders.
function(vekad_sources target)
  foreach(folder IN LISTS ARGN)
    file(GLOB found CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/*.cpp)
    target_sources(${target} PRIVATE ${found})
    list(APPEND all_found ${found})
  endforeach()
  # A target whose folders are still empty is configured all the same, and left out of a plain build.
  if(NOT all_found)
    file(WRITE ${CMAKE_BINARY_DIR}/empty.cpp "")
    target_sources(${target} PRIVATE ${CMAKE_BINARY_DIR}/empty.cpp)
    set_target_properties(${target} PROPERTIES EXCLUDE_FROM_ALL ON)
  endif()
endfunction()

# The standard headers that nearly every source uses. With VEKAD_PCH off they are included as they are, which lets one
# compiler cache serve several checkouts.
option(VEKAD_PCH "precompile the standard headers" ON)
function(vekad_precompile target)
  if(VEKAD_PCH)
    target_precompile_headers(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${CMAKE_SOURCE_DIR}/cmake/prelude.h>)
  else()
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:SHELL:-include ${CMAKE_SOURCE_DIR}/cmake/prelude.h>)
  endif()
endfunction()

# A module: a shared object of exactly the given file name that binds to the host at run time.
function(vekad_module target file)
  add_library(${target} MODULE)
  vekad_sources(${target} ${ARGN})
  set_target_properties(${target} PROPERTIES PREFIX "" SUFFIX "" OUTPUT_NAME ${file})
  target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/sdk)
  target_link_libraries(${target} PRIVATE vekadhost)
  target_link_options(${target} PRIVATE -Wl,-Bsymbolic)
  vekad_precompile(${target})
endfunction()
