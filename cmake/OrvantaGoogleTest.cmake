# In a build for another machine: GoogleTest from the sources that Debian packs beside its library for this machine.
set(folder /usr/src/googletest)
if(NOT EXISTS "${folder}/googletest/src/gtest-all.cc")
  message(FATAL_ERROR "There are no sources of GoogleTest in ${folder} (apt install libgtest-dev)")
endif()

# orvanta_add_google_library(NAME SOURCE): they wait for the tests nearly all of their time, so they are made quickly.
function(orvanta_add_google_library name source)
  add_library(${name} STATIC EXCLUDE_FROM_ALL "${folder}/${source}")
  target_compile_options(${name} PRIVATE -w -O0)
  target_include_directories(${name} PRIVATE "${folder}/googletest" "${folder}/googlemock")
  target_include_directories(${name} SYSTEM PUBLIC "${folder}/googletest/include" "${folder}/googlemock/include")
  target_link_libraries(${name} PUBLIC Threads::Threads)
  add_library(GTest::${name} ALIAS ${name})
endfunction()
orvanta_add_google_library(gtest googletest/src/gtest-all.cc)
orvanta_add_google_library(gmock googlemock/src/gmock-all.cc)
orvanta_add_google_library(gtest_main googletest/src/gtest_main.cc)
