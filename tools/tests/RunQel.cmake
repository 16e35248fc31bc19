# Runs qel once, as a user does, and checks what it did.
#
#   cmake -DQEL=<program> -DARGS=<arguments joined by |> [-DSTATUS=<exit status, 0>]
#         [-DSTDOUT=<regexes joined by |>] [-DSTDERR=<regexes joined by |>]
#         [-DSAVE=<file to keep standard output in>]
#         [-DSAME_AS=<file that standard output must equal>]
#         -P RunQel.cmake
cmake_minimum_required(VERSION 3.25)

string(REPLACE "|" ";" arguments "${ARGS}")
execute_process(COMMAND "${QEL}" ${arguments}
    RESULT_VARIABLE status
    OUTPUT_VARIABLE output
    ERROR_VARIABLE errors)

set(shown "qel ${arguments}\n--- exit status ${status}\n--- standard output:\n${output}\n--- standard error:\n${errors}")
if(NOT DEFINED STATUS OR STATUS STREQUAL "")
    set(STATUS 0)
endif()
if(NOT status STREQUAL STATUS)
    message(FATAL_ERROR "expected exit status ${STATUS}\n${shown}")
endif()

foreach(stream IN ITEMS STDOUT STDERR)
    if(stream STREQUAL "STDOUT")
        set(text "${output}")
    else()
        set(text "${errors}")
    endif()
    string(REPLACE "|" ";" expressions "${${stream}}")
    foreach(expression IN LISTS expressions)
        if(NOT text MATCHES "${expression}")
            message(FATAL_ERROR "${stream} does not match \"${expression}\"\n${shown}")
        endif()
    endforeach()
endforeach()

if(SAVE)
    file(WRITE "${SAVE}" "${output}")
endif()
if(SAME_AS)
    file(READ "${SAME_AS}" expected)
    if(NOT output STREQUAL expected)
        message(FATAL_ERROR "standard output differs from ${SAME_AS}\n${shown}")
    endif()
endif()
