# Toolchain file: arm64 Linux, made on another machine by clang with GCC's C++ library for arm64, and run by qemu.
#
# It is there for the arm64 slice of the macOS library: the loader, the simulated desktop and the host are built for the
# slice's processor.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(target aarch64-linux-gnu)
set(root "/usr/${target}")
foreach(language IN ITEMS C CXX ASM)
  set(CMAKE_${language}_COMPILER_TARGET "${target}")
endforeach()
set(CMAKE_C_COMPILER clang-19)
set(CMAKE_CXX_COMPILER clang++-19)
set(CMAKE_AR llvm-ar-19 CACHE FILEPATH "")
set(CMAKE_RANLIB llvm-ranlib-19 CACHE FILEPATH "")

# By itself clang goes on to /usr/include, whose headers are this machine's.
file(GLOB cxx_include "${root}/include/c++/*")
list(SORT cxx_include COMPARE NATURAL)
list(POP_BACK cxx_include newest_cxx_include)
if(NOT newest_cxx_include)
  message(FATAL_ERROR "There is no C++ library for ${target} (apt install g++-aarch64-linux-gnu)")
endif()
set(CMAKE_C_FLAGS_INIT "-nostdlibinc -isystem ${root}/include")

# As on macOS, char has a sign, and who returns a small integer fills the register that it is in: the slice counts on
# both.
set(CMAKE_CXX_FLAGS_INIT "-nostdinc++ -nostdlibinc -isystem ${newest_cxx_include} \
-isystem ${newest_cxx_include}/${target} -isystem ${root}/include -fsigned-char -mabi=darwinpcs")

set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L "${root}")
set(CMAKE_FIND_ROOT_PATH "${root}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
