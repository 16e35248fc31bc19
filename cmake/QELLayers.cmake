# The library's layers, each an object library of its own folder.
#
#   qel_add_layer(<layer> [SEES <layer>...])
#
# A layer compiles the .cpp files directly inside <layer>/ and sees the
# headers of <layer>/ and <layer>/internal/, plus those of the layers it is
# said to see (and what they see in turn), nothing else: an include of a
# header from a layer above cannot be resolved, so it fails to build. Every
# header of the layer is compiled once more, all of them in one generated
# source, so that a header only included from above is held to the same rule.
#
# Each call appends to QEL_LAYERS, QEL_LAYER_SEES (<layer>:<seen>,<seen>...,
# read by cmake/QELLayerCheck.cmake), QEL_PUBLIC_HEADERS and
# QEL_INTERNAL_HEADERS in the caller's scope.

include_guard(GLOBAL)

function(qel_add_layer layer)
    cmake_parse_arguments(arg "" "" "SEES" ${ARGN})
    set(dir "${PROJECT_SOURCE_DIR}/${layer}")
    file(GLOB sources CONFIGURE_DEPENDS "${dir}/*.cpp")
    file(GLOB public_headers CONFIGURE_DEPENDS "${dir}/*.h")
    file(GLOB internal_headers CONFIGURE_DEPENDS "${dir}/internal/*.h")
    list(SORT sources)
    list(SORT public_headers)
    list(SORT internal_headers)

    set(target qeldm_${layer})
    add_library(${target} OBJECT ${sources} ${public_headers} ${internal_headers})
    target_include_directories(${target} PUBLIC "${dir}")
    if(IS_DIRECTORY "${dir}/internal")
        target_include_directories(${target} PUBLIC "${dir}/internal")
    endif()
    foreach(seen IN LISTS arg_SEES)
        target_link_libraries(${target} PUBLIC qeldm_${seen})
    endforeach()
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(${target} PROPERTIES
        # The objects go into a shared qeldm as well as a static one, and
        # every symbol is exported with default visibility.
        POSITION_INDEPENDENT_CODE ${BUILD_SHARED_LIBS}
        CXX_VISIBILITY_PRESET default
        VISIBILITY_INLINES_HIDDEN OFF)
    qel_target_warnings(${target})

    set(check "${PROJECT_BINARY_DIR}/layers/${layer}_headers.cpp")
    set(content "// Generated: every header of ${layer}/, compiled with what ${layer} sees.\n")
    foreach(header IN LISTS public_headers internal_headers)
        cmake_path(GET header FILENAME name)
        string(APPEND content "#include \"${name}\"\n")
    endforeach()
    file(CONFIGURE OUTPUT "${check}" CONTENT "${content}")
    add_library(${target}_headers OBJECT "${check}")
    target_link_libraries(${target}_headers PRIVATE ${target})
    qel_target_warnings(${target}_headers)

    list(JOIN arg_SEES "," seen)
    set(QEL_LAYERS ${QEL_LAYERS} ${layer} PARENT_SCOPE)
    set(QEL_LAYER_SEES ${QEL_LAYER_SEES} "${layer}:${seen}" PARENT_SCOPE)
    set(QEL_PUBLIC_HEADERS ${QEL_PUBLIC_HEADERS} ${public_headers} PARENT_SCOPE)
    set(QEL_INTERNAL_HEADERS ${QEL_INTERNAL_HEADERS} ${internal_headers} PARENT_SCOPE)
endfunction()
