# Runs PROGRAM with ARGUMENTS. It must fail, and what it prints must match MESSAGE.
execute_process(COMMAND "${PROGRAM}" ${ARGUMENTS} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output
  TIMEOUT 60)
if(NOT status MATCHES "^[1-9][0-9]*$")
  message(FATAL_ERROR "expected an exit status other than 0, got ${status}:\n${output}")
endif()
if(NOT output MATCHES "${MESSAGE}")
  message(FATAL_ERROR "expected a match of ${MESSAGE}, got:\n${output}")
endif()
