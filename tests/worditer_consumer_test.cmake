# Installs the worditer component into a fresh prefix, then configures, builds
# and runs tests/worditer_consumer against that prefix alone.
cmake_minimum_required(VERSION 3.16)

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
    message("${out}")
    if(NOT rc EQUAL 0)
        list(JOIN ARGN " " cmd)
        message(FATAL_ERROR "failed (${rc}): ${cmd}")
    endif()
    set(run_output "${out}" PARENT_SCOPE)
endfunction()

set(prefix ${WORK_DIR}/prefix)
set(build ${WORK_DIR}/build)
file(REMOVE_RECURSE ${WORK_DIR})

set(config_args)
if(CONFIG)
    set(config_args --config ${CONFIG})
endif()
run(${CMAKE_COMMAND} --install ${BUILD_DIR} ${config_args} --component worditer --prefix ${prefix})

file(GLOB_RECURSE libs ${prefix}/*/libworditer.so)
if(NOT libs)
    message(FATAL_ERROR "no libworditer.so installed under ${prefix}")
endif()

# The library's interface is the class: its 17 operations (constructors and
# destructors count once, though each comes in two variants) and nothing else.
if(NOT NM)
    message(FATAL_ERROR "nm not found: install binutils")
endif()
list(GET libs 0 lib)
run(${NM} -DC --defined-only ${lib})
string(REPLACE "\n" ";" lines "${run_output}")
set(operations)
foreach(line IN LISTS lines)
    if(line MATCHES "^[0-9a-f]+ [A-Za-z] (.*)$")
        set(symbol "${CMAKE_MATCH_1}")
        if(NOT symbol MATCHES "^wordIter::")
            message(FATAL_ERROR "exported symbol outside the class: ${symbol}")
        endif()
        list(APPEND operations "${symbol}")
    endif()
endforeach()
list(REMOVE_DUPLICATES operations)
list(LENGTH operations count)
if(NOT count EQUAL 17)
    list(JOIN operations "\n  " listed)
    message(FATAL_ERROR "${count} operations exported instead of 17:\n  ${listed}")
endif()

run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${build} -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
    -DCMAKE_CXX_FLAGS=${CXX_FLAGS}
    -DCMAKE_PREFIX_PATH=${prefix}
    -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF
    -DQt6_DIR=${Qt6_DIR})
run(${CMAKE_COMMAND} --build ${build})

# The package must have come from the fresh prefix, not from somewhere else.
file(STRINGS ${build}/CMakeCache.txt found REGEX "^WordIter_DIR:")
if(NOT found MATCHES "^WordIter_DIR:PATH=${prefix}/")
    message(FATAL_ERROR "WordIter found elsewhere: ${found}")
endif()

run(${build}/worditer_consumer)
