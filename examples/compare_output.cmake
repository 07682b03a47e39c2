# Runs PROGRAM on FOLDER and fails unless it prints exactly FOLDER/demo.expected.
execute_process(
  COMMAND ${PROGRAM} ${FOLDER}
  OUTPUT_VARIABLE printed
  ERROR_VARIABLE complaints
  RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "the demo ended with ${result}: ${complaints}")
endif()
file(READ ${FOLDER}/demo.expected expected)
if(NOT printed STREQUAL expected)
  message(FATAL_ERROR "the demo printed:\n${printed}\nand not:\n${expected}")
endif()
