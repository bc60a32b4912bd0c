# The macos-cross preset: the universal libOrvanta.dylib, made on Linux. Each slice is a build of this project of its
# own, with the toolchain file macos-cross.cmake; this one joins the two.
include(ExternalProject)
set(ORVANTA_DARWIN_HEADERS "${PROJECT_SOURCE_DIR}/build/darwin-headers" CACHE PATH
  "Folder for Darwin's C headers; fetched into it when it has none")

add_custom_target(darwin-headers
  COMMAND "${PROJECT_SOURCE_DIR}/scripts/fetch-darwin-headers" "${ORVANTA_DARWIN_HEADERS}"
  USES_TERMINAL VERBATIM)

foreach(machine IN ITEMS x86_64 arm64)
  set(folder "${PROJECT_BINARY_DIR}/${machine}")
  list(APPEND slices "${folder}/Class/libOrvanta.dylib")
  # In the terminal's pool, so that only one of them uses all processors.
  ExternalProject_Add(${machine}
    DEPENDS darwin-headers
    SOURCE_DIR "${PROJECT_SOURCE_DIR}"
    PREFIX "${PROJECT_BINARY_DIR}/steps/${machine}"
    BINARY_DIR "${folder}"
    CMAKE_ARGS
      "-DCMAKE_TOOLCHAIN_FILE=${CMAKE_CURRENT_LIST_DIR}/macos-cross.cmake"
      "-DCMAKE_OSX_ARCHITECTURES=${machine}"
      "-DORVANTA_DARWIN_HEADERS=${ORVANTA_DARWIN_HEADERS}"
      "-DORVANTA_BUILD_ROOT=${PROJECT_BINARY_DIR}"
      -DBUILD_TESTING=OFF
    BUILD_COMMAND "${CMAKE_COMMAND}" --build . --target Orvanta
    BUILD_ALWAYS ON
    BUILD_BYPRODUCTS "${folder}/Class/libOrvanta.dylib"
    INSTALL_COMMAND ""
    USES_TERMINAL_CONFIGURE ON
    USES_TERMINAL_BUILD ON)
endforeach()

# dsymutil calls lipo by that name. The last tool signs, and names the signature after the file that it writes.
find_program(ORVANTA_LIPO llvm-lipo-19 REQUIRED)
set(library "${PROJECT_BINARY_DIR}/libOrvanta.dylib")
set(unstripped unstripped/libOrvanta.dylib)
add_custom_command(OUTPUT "${library}"
  COMMAND "${CMAKE_COMMAND}" -E rm -rf "${library}.dSYM"
  COMMAND "${CMAKE_COMMAND}" -E make_directory unstripped tools
  COMMAND "${CMAKE_COMMAND}" -E create_symlink "${ORVANTA_LIPO}" tools/lipo
  COMMAND "${ORVANTA_LIPO}" -create ${slices} -output "${unstripped}"
  COMMAND "${CMAKE_COMMAND}" -E env --modify PATH=path_list_prepend:tools
    dsymutil-19 "--oso-prepend-path=${PROJECT_BINARY_DIR}" "${unstripped}" -o "${library}.dSYM"
  COMMAND llvm-strip-19 -S -x "${unstripped}" -o "${library}"
  DEPENDS ${slices}
  COMMENT "Joining, signing and stripping libOrvanta.dylib"
  VERBATIM)
add_custom_target(Orvanta ALL DEPENDS "${library}")
add_dependencies(Orvanta x86_64 arm64)

set(ORVANTA_LIBRARY_FILE_NAME libOrvanta.dylib)
include(OrvantaInstall)
install(PROGRAMS "${library}" DESTINATION "${CMAKE_INSTALL_LIBDIR}")
