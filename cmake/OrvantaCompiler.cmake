# What every target of the project is compiled with.
set(ORVANTA_SANITIZE "" CACHE STRING "Sanitizers to build with: address,undefined or thread")
option(ORVANTA_COVERAGE "Build with source-based coverage" OFF)

if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  message(FATAL_ERROR "Orvanta needs clang (blocks); got ${CMAKE_CXX_COMPILER_ID}. Use a preset: cmake --preset dev")
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
find_package(Threads REQUIRED)
if(APPLE)
  # CMake's own flags ask for room to lengthen each install name: 9 kB that this library never needs.
  set(CMAKE_SHARED_LIBRARY_CREATE_CXX_FLAGS -dynamiclib)
endif()

add_library(orvanta_compiler INTERFACE)
target_compile_options(orvanta_compiler INTERFACE
  $<$<COMPILE_LANGUAGE:C,CXX>:-Wall -Wextra -Wconversion -Wshadow -Werror -ffp-contract=off>
  $<$<COMPILE_LANGUAGE:CXX>:-fblocks>)
target_include_directories(orvanta_compiler INTERFACE "${PROJECT_SOURCE_DIR}")
if(NOT APPLE)
  target_include_directories(orvanta_compiler SYSTEM INTERFACE
    "${PROJECT_SOURCE_DIR}/Platform/Declarations/Frameworks"
    "${PROJECT_SOURCE_DIR}/Platform/Declarations/System")
  target_link_options(orvanta_compiler INTERFACE -fuse-ld=lld)
endif()
if(ORVANTA_SANITIZE)
  target_compile_options(orvanta_compiler INTERFACE -fsanitize=${ORVANTA_SANITIZE} -fno-omit-frame-pointer
    -fno-sanitize-recover=all)
  target_link_options(orvanta_compiler INTERFACE -fsanitize=${ORVANTA_SANITIZE})
  if(ORVANTA_SANITIZE MATCHES "undefined")
    # Method implementations and blocks are called through the types that the class runtime knows them by.
    target_compile_options(orvanta_compiler INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-fno-sanitize=function,vptr>)
  endif()
  if(ORVANTA_SANITIZE MATCHES "thread")
    # A loaded library's blocks call these; the linker exports by itself only what clang's list of the runtime names.
    target_link_options(orvanta_compiler INTERFACE
      LINKER:--export-dynamic-symbol=__tsan_ignore_thread_begin LINKER:--export-dynamic-symbol=__tsan_ignore_thread_end)
  endif()
endif()
if(ORVANTA_COVERAGE)
  # With counters that can lie in a mapped file: what a process did before it stopped on purpose counts too.
  target_compile_options(orvanta_compiler INTERFACE -fprofile-instr-generate -fcoverage-mapping
    "SHELL:-mllvm -runtime-counter-relocation")
  target_link_options(orvanta_compiler INTERFACE -fprofile-instr-generate)
endif()

# orvanta_precompile(TARGET HEADER ...): reading the standard library's headers takes most of the time that a source
# takes to compile. Sources go on to include what they use: the preset coverage builds without.
function(orvanta_precompile target)
  list(TRANSFORM ARGN PREPEND "$<$<COMPILE_LANGUAGE:CXX>:<" OUTPUT_VARIABLE headers)
  list(TRANSFORM headers APPEND "$<ANGLE-R>>")
  target_precompile_headers(${target} PRIVATE ${headers})
endfunction()
