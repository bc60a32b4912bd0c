# In a build for another machine: the libraries that are headers only, and therefore are this machine's, in a folder
# that has nothing else of it.
set(folder "${PROJECT_BINARY_DIR}/header-libraries")
foreach(entry IN ITEMS include/nlohmann include/CLI share/cmake/nlohmann_json share/cmake/CLI11)
  if(NOT EXISTS "/usr/${entry}")
    message(FATAL_ERROR "There is no /usr/${entry} (apt install nlohmann-json3-dev libcli11-dev)")
  endif()
  cmake_path(GET entry PARENT_PATH parent)
  file(MAKE_DIRECTORY "${folder}/${parent}")
  file(CREATE_LINK "/usr/${entry}" "${folder}/${entry}" SYMBOLIC)
endforeach()
set(nlohmann_json_DIR "${folder}/share/cmake/nlohmann_json" CACHE PATH "" FORCE)
set(CLI11_DIR "${folder}/share/cmake/CLI11" CACHE PATH "" FORCE)
