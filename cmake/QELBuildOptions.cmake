# Compiler settings shared by every target of the build.
#
#   qel_target_warnings(<target>)   warnings for code of this repository
#
# QEL_SANITIZE and QEL_FUZZ are applied directory-wide (compile and link) so that every
# object and every link step of the build carries the same instrumentation.

include_guard(GLOBAL)

function(qel_target_warnings target)
    if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
        if(QEL_WARNINGS_AS_ERRORS)
            target_compile_options(${target} PRIVATE -Werror)
        endif()
    elseif(MSVC)
        target_compile_options(${target} PRIVATE /W4 /permissive-)
        if(QEL_WARNINGS_AS_ERRORS)
            target_compile_options(${target} PRIVATE /WX)
        endif()
    endif()
endfunction()

if(QEL_SANITIZE)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
        message(FATAL_ERROR "QEL_SANITIZE needs GCC or Clang, not ${CMAKE_CXX_COMPILER_ID}")
    endif()
    set(QEL_SANITIZER_FLAGS
        -fsanitize=address,undefined
        -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    add_compile_options(${QEL_SANITIZER_FLAGS})
    # GCC 12 reports -Wmaybe-uninitialized falsely inside the standard library
    # (std::regex, std::function) once the sanitizers instrument it.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-Wno-maybe-uninitialized)
    endif()
    add_link_options(${QEL_SANITIZER_FLAGS})
endif()

# libFuzzer builds: every object carries the fuzzer's coverage hooks and the
# sanitizers; only the harnesses link the fuzzer's main (fuzz/CMakeLists.txt).
if(QEL_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "QEL_FUZZ needs Clang, not ${CMAKE_CXX_COMPILER_ID}")
    endif()
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
