# Runs one golden case: CLI with ARGS (joined by the unit separator), STDIN as standard input when given;
# standard output must equal EXPECTED byte for byte, the exit status EXPECTED_EXIT, and standard
# error must contain STDERR_HAS when given.
string(ASCII 31 sep)
string(REPLACE "${sep}" ";" args "${ARGS}")
if(STDIN)
  execute_process(COMMAND ${CLI} ${args} INPUT_FILE ${STDIN}
                  OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE status)
else()
  execute_process(COMMAND ${CLI} ${args}
                  OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE status)
endif()
if(NOT "${status}" STREQUAL "${EXPECTED_EXIT}")
  message(FATAL_ERROR "exit status ${status}, expected ${EXPECTED_EXIT}\nstderr:\n${err}")
endif()
if(NOT "${STDERR_HAS}" STREQUAL "")
  string(FIND "${err}" "${STDERR_HAS}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "standard error lacks \"${STDERR_HAS}\"\nstderr:\n${err}")
  endif()
endif()
file(READ ${EXPECTED} expected)
if(NOT "${out}" STREQUAL "${expected}")
  file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/actual.out "${out}")
  message(FATAL_ERROR "output differs from ${EXPECTED}\n--- got:\n${out}\n--- stderr:\n${err}")
endif()
