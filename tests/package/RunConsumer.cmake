# Installs qeldm from the source tree into a fresh prefix and builds and runs
# the project in consumer/ against the installed package.
#
#   cmake -DQEL_SOURCE_DIR=<repo> -DQEL_WORK_DIR=<scratch> -DQEL_SHARED=ON|OFF
#         [-DQEL_GENERATOR=...] [-DQEL_MAKE_PROGRAM=...] [-DQEL_CXX_COMPILER=...]
#         [-DQEL_BUILD_TYPE=...] [-DQEL_WARNINGS_AS_ERRORS=ON|OFF]
#         -P RunConsumer.cmake

cmake_minimum_required(VERSION 3.25)

foreach(required IN ITEMS QEL_SOURCE_DIR QEL_WORK_DIR QEL_SHARED)
    if(NOT DEFINED ${required})
        message(FATAL_ERROR "RunConsumer.cmake: ${required} is not set")
    endif()
endforeach()
if(NOT QEL_BUILD_TYPE)
    set(QEL_BUILD_TYPE Release)
endif()
if(NOT DEFINED QEL_WARNINGS_AS_ERRORS)
    set(QEL_WARNINGS_AS_ERRORS OFF)
endif()

set(library_build "${QEL_WORK_DIR}/qeldm-build")
set(prefix "${QEL_WORK_DIR}/prefix")
set(consumer_build "${QEL_WORK_DIR}/consumer-build")

# Settings shared by both configure steps.
set(common_args "-DCMAKE_BUILD_TYPE=${QEL_BUILD_TYPE}")
if(QEL_GENERATOR)
    list(APPEND common_args -G "${QEL_GENERATOR}")
endif()
if(QEL_MAKE_PROGRAM)
    list(APPEND common_args "-DCMAKE_MAKE_PROGRAM=${QEL_MAKE_PROGRAM}")
endif()
if(QEL_CXX_COMPILER)
    list(APPEND common_args "-DCMAKE_CXX_COMPILER=${QEL_CXX_COMPILER}")
endif()

function(run_step what)
    message(STATUS "==> ${what}")
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${what} failed (${result})")
    endif()
endfunction()

file(REMOVE_RECURSE "${QEL_WORK_DIR}")
file(MAKE_DIRECTORY "${QEL_WORK_DIR}")

run_step("configure qeldm (BUILD_SHARED_LIBS=${QEL_SHARED})"
    "${CMAKE_COMMAND}" -S "${QEL_SOURCE_DIR}" -B "${library_build}" ${common_args}
        "-DBUILD_SHARED_LIBS=${QEL_SHARED}"
        "-DCMAKE_INSTALL_PREFIX=${prefix}"
        -DQEL_BUILD_TESTS=OFF
        -DQEL_BUILD_EXAMPLES=OFF
        -DQEL_SANITIZE=OFF
        "-DQEL_WARNINGS_AS_ERRORS=${QEL_WARNINGS_AS_ERRORS}")
run_step("build qeldm" "${CMAKE_COMMAND}" --build "${library_build}")
run_step("install qeldm" "${CMAKE_COMMAND}" --install "${library_build}")

# The installed library must be of the kind that was asked for.
file(GLOB_RECURSE static_libs "${prefix}/lib*/libqeldm.a" "${prefix}/lib*/qeldm.lib")
file(GLOB_RECURSE shared_libs "${prefix}/lib*/libqeldm.so*" "${prefix}/lib*/libqeldm*.dylib"
                              "${prefix}/bin/qeldm.dll")
if(QEL_SHARED AND (NOT shared_libs OR static_libs))
    message(FATAL_ERROR "expected only a shared qeldm in ${prefix}: "
                        "shared='${shared_libs}' static='${static_libs}'")
elseif(NOT QEL_SHARED AND (NOT static_libs OR shared_libs))
    message(FATAL_ERROR "expected only a static qeldm in ${prefix}: "
                        "shared='${shared_libs}' static='${static_libs}'")
endif()

run_step("configure consumer"
    "${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}/consumer" -B "${consumer_build}" ${common_args}
        "-DCMAKE_PREFIX_PATH=${prefix}"
        -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF
        -DCMAKE_FIND_USE_SYSTEM_PACKAGE_REGISTRY=OFF)

# find_package must have taken the package just installed, not another one.
file(STRINGS "${consumer_build}/CMakeCache.txt" qeldm_dir REGEX "^QELDM_DIR:")
string(REGEX REPLACE "^QELDM_DIR:[A-Z]+=" "" qeldm_dir "${qeldm_dir}")
cmake_path(IS_PREFIX prefix "${qeldm_dir}" NORMALIZE found_in_prefix)
if(NOT found_in_prefix)
    message(FATAL_ERROR "consumer found QELDM in '${qeldm_dir}', not under ${prefix}")
endif()

run_step("build consumer" "${CMAKE_COMMAND}" --build "${consumer_build}")

# The consumer runs from its build tree, where CMake's build RPATH points at
# the installed shared library.
file(GLOB consumer_exe "${consumer_build}/qeldm_consumer" "${consumer_build}/qeldm_consumer.exe")
if(NOT consumer_exe)
    message(FATAL_ERROR "qeldm_consumer was not built in ${consumer_build}")
endif()
run_step("run consumer" ${consumer_exe})
message(STATUS "package consumer (BUILD_SHARED_LIBS=${QEL_SHARED}) passed")
