# Runs a program of the guide in an empty folder and compares what it prints with what it is to print.
#   cmake -D PROGRAM=... -D EXPECTED=... -D DATA=... -D FOLDER=... -P run_program.cmake
# The names of the folders are replaced, because they differ from machine to machine.

file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=KASCHEMA_PATH ${PROGRAM} ${DATA} WORKING_DIRECTORY ${FOLDER}
    OUTPUT_VARIABLE printed RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} ended with ${status}, after:\n${printed}")
endif()
string(REPLACE "${FOLDER}" "<folder>" printed "${printed}")
string(REPLACE "${DATA}" "<data>" printed "${printed}")
file(READ ${EXPECTED} expected)
if(NOT printed STREQUAL expected)
    file(WRITE ${FOLDER}/printed "${printed}")
    execute_process(COMMAND diff -u ${EXPECTED} ${FOLDER}/printed)
    message(FATAL_ERROR "${PROGRAM} prints something else than ${EXPECTED} (above, unless there is no diff). "
        "If it is right, copy ${FOLDER}/printed.")
endif()
