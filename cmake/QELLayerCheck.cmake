# Fails when a file of a layer includes a header of a layer it does not see.
#
#   cmake -DQEL_SOURCE_DIR=<repo> "-DQEL_LAYER_SEES=services:|model:services|..." -P QELLayerCheck.cmake
#
# QEL_LAYER_SEES lists each layer with the layers directly below it, as
# CMakeLists.txt declares them; a layer sees those and, through them, theirs.
# Every .h and .cpp of a layer's folder and of its internal/ folder is read;
# an include names a header by its file name, which is unique across layers.
# A public header (one directly in a layer's folder, installed) may not
# include an internal one either.

cmake_minimum_required(VERSION 3.25)

foreach(required IN ITEMS QEL_SOURCE_DIR QEL_LAYER_SEES)
    if(NOT DEFINED ${required})
        message(FATAL_ERROR "QELLayerCheck.cmake: ${required} is not set")
    endif()
endforeach()

string(REPLACE "|" ";" declarations "${QEL_LAYER_SEES}")
set(layers "")
foreach(declaration IN LISTS declarations)
    string(REPLACE ":" ";" parts "${declaration}")
    list(GET parts 0 layer)
    list(LENGTH parts length)
    set(direct_${layer} "")
    if(length GREATER 1)
        list(GET parts 1 seen)
        string(REPLACE "," ";" direct_${layer} "${seen}")
    endif()
    list(APPEND layers ${layer})
endforeach()

# What each layer sees: itself and everything below it. Layers are declared
# lowest first, so the layers below are complete when a layer is reached.
foreach(layer IN LISTS layers)
    set(sees_${layer} ${layer})
    foreach(seen IN LISTS direct_${layer})
        list(APPEND sees_${layer} ${sees_${seen}})
    endforeach()
    list(REMOVE_DUPLICATES sees_${layer})
endforeach()

# The layer of every header, by file name, and which headers are internal.
foreach(layer IN LISTS layers)
    file(GLOB headers "${QEL_SOURCE_DIR}/${layer}/*.h")
    file(GLOB internal_headers "${QEL_SOURCE_DIR}/${layer}/internal/*.h")
    foreach(header IN LISTS headers internal_headers)
        cmake_path(GET header FILENAME name)
        set("layer_of_${name}" ${layer})
    endforeach()
    foreach(header IN LISTS internal_headers)
        cmake_path(GET header FILENAME name)
        set("internal_${name}" TRUE)
    endforeach()
endforeach()

set(violations 0)
foreach(layer IN LISTS layers)
    file(GLOB files
        "${QEL_SOURCE_DIR}/${layer}/*.h" "${QEL_SOURCE_DIR}/${layer}/*.cpp"
        "${QEL_SOURCE_DIR}/${layer}/internal/*.h" "${QEL_SOURCE_DIR}/${layer}/internal/*.cpp")
    foreach(file IN LISTS files)
        file(STRINGS "${file}" includes REGEX "^[ \t]*#[ \t]*include[ \t]*\"")
        foreach(line IN LISTS includes)
            string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]*\"([^\"]+)\".*" "\\1" included "${line}")
            cmake_path(GET included FILENAME name)
            if(NOT DEFINED "layer_of_${name}")
                continue() # not a header of the library
            endif()
            set(target "${layer_of_${name}}")
            cmake_path(RELATIVE_PATH file BASE_DIRECTORY "${QEL_SOURCE_DIR}" OUTPUT_VARIABLE shown)
            if(NOT target IN_LIST sees_${layer})
                message(SEND_ERROR "${shown} (layer ${layer}) includes ${name} of layer ${target}, "
                                   "which ${layer} does not see (it sees ${sees_${layer}})")
                math(EXPR violations "${violations} + 1")
            elseif(shown MATCHES "^[^/]+/[^/]+\\.h$" AND internal_${name})
                message(SEND_ERROR "${shown} is installed but includes ${name}, an internal header that is not")
                math(EXPR violations "${violations} + 1")
            endif()
        endforeach()
    endforeach()
endforeach()

if(violations GREATER 0)
    message(FATAL_ERROR "${violations} include(s) reach a layer above or beside their own, or out of the installed headers")
endif()
list(LENGTH layers count)
message(STATUS "every include of the ${count} layers stays in its layer or below")
