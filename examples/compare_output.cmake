# Runs PROGRAM on FOLDER and OUTPUT and fails unless it prints exactly what the file EXPECTED holds.
execute_process(
  COMMAND ${PROGRAM} ${FOLDER} ${OUTPUT}
  OUTPUT_VARIABLE printed
  ERROR_VARIABLE complaints
  RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "the program ended with ${result}: ${complaints}")
endif()
file(READ ${EXPECTED} expected)
if(NOT printed STREQUAL expected)
  message(FATAL_ERROR "the program printed:\n${printed}\nand not:\n${expected}")
endif()
