# Compares the file DOCUMENT with the output of PROGRAM, and fails when they differ.
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE printed RESULT_VARIABLE status)
file(READ ${DOCUMENT} kept)
if(NOT status EQUAL 0 OR NOT printed STREQUAL kept)
    message(FATAL_ERROR "${DOCUMENT} is stale: write it anew with ${PROGRAM} > ${DOCUMENT}")
endif()
