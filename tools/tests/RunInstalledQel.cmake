# Installs qel as the README says, under a prefix other than the one the
# build was configured with, and runs the installed program from a folder
# outside the source tree: it must find its bundled example next to itself.
#
#   cmake -DQEL_BUILD_DIR=<build> -DQEL_PREFIX=<fresh prefix>
#         -DQEL_BINDIR=<bin> -DQEL_DATADIR=<share> -P RunInstalledQel.cmake
cmake_minimum_required(VERSION 3.25)

foreach(required IN ITEMS QEL_BUILD_DIR QEL_PREFIX QEL_BINDIR QEL_DATADIR)
    if(NOT DEFINED ${required})
        message(FATAL_ERROR "RunInstalledQel.cmake: ${required} is not set")
    endif()
endforeach()

file(REMOVE_RECURSE "${QEL_PREFIX}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${QEL_BUILD_DIR}" --prefix "${QEL_PREFIX}" --component qel
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "cmake --install failed (${status})")
endif()

# The installed copy is told apart from the source tree's: the program must
# read this one.
set(session "${QEL_PREFIX}/${QEL_DATADIR}/qeldm/session.json")
file(READ "${session}" text)
string(REPLACE "\"Spacer ring\"" "\"Spacer ring, installed\"" text "${text}")
file(WRITE "${session}" "${text}")

if(DEFINED ENV{TMPDIR} AND IS_DIRECTORY "$ENV{TMPDIR}")
    set(outside "$ENV{TMPDIR}")
else()
    set(outside "/tmp")
endif()
string(RANDOM LENGTH 8 suffix)
set(work "${outside}/qel-installed-${suffix}")
file(MAKE_DIRECTORY "${work}")
execute_process(COMMAND "${QEL_PREFIX}/${QEL_BINDIR}/qel" roundtrip
    WORKING_DIRECTORY "${work}"
    RESULT_VARIABLE status
    OUTPUT_VARIABLE output
    ERROR_VARIABLE errors)
file(REMOVE_RECURSE "${work}")

if(NOT status EQUAL 0)
    message(FATAL_ERROR "installed qel roundtrip: exit status ${status}\n${errors}")
endif()
if(NOT output MATCHES "CV5CAAQELITEM +Spacer ring, installed +Item_ID +\\(none\\) +ITM-000007")
    message(FATAL_ERROR "installed qel did not run on its installed example\n${output}\n${errors}")
endif()
