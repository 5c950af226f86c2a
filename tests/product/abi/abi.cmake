# Lists the exported symbols of LIBRARY, demangled and sorted, and behind them what the program SIZES prints (run
# through EMULATOR).
# Writes that to ACTUAL and compares it with LIST, or with UPDATE writes LIST.

function(run result)
    execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
    string(REPLACE "\r" "" output "${output}")
    set(${result} "${output}" PARENT_SCOPE)
endfunction()

if(PLATFORM STREQUAL "windows")
    run(dump "${OBJDUMP}" -p "${LIBRARY}")
    string(REGEX REPLACE ".*Name Pointer\\] Table" "" dump "${dump}")
    string(REGEX REPLACE "\n\n.*" "" dump "${dump}")
    string(REGEX MATCHALL "\\[ *[0-9]+\\] [^\n]+" lines "${dump}")
    list(TRANSFORM lines REPLACE "\\[ *[0-9]+\\] " "")
else()
    run(dump "${NM}" -D --defined-only --format=posix "${LIBRARY}")
    string(REGEX MATCHALL "[^\n]+" lines "${dump}")
    list(TRANSFORM lines REPLACE " .*" "")
endif()
# What the library instantiates of the standard library is no interface of ours, and neither are Qt's inline
# functions, which stay functions without optimisation.
list(FILTER lines EXCLUDE REGEX "^_Z(Z?N?K?|T[VISC])St")
list(FILTER lines EXCLUDE REGEX "^_Z(N?K?|T[VISC])[0-9]+Q[A-Z]")

find_program(CXXFILT c++filt REQUIRED)
list(JOIN lines "\n" mangled)
file(WRITE "${ACTUAL}" "${mangled}\n")
execute_process(
    COMMAND "${CXXFILT}" INPUT_FILE "${ACTUAL}" OUTPUT_VARIABLE demangled COMMAND_ERROR_IS_FATAL ANY
)
string(REGEX MATCHALL "[^\n]+" symbols "${demangled}")
list(SORT symbols)
# A constructor or destructor has several symbols of one name.
list(REMOVE_DUPLICATES symbols)
list(JOIN symbols "\n" symbols)
string(REPLACE "|" ";" emulator "${EMULATOR}")
run(sizes ${emulator} "${SIZES}")
file(WRITE "${ACTUAL}" "${symbols}\n\n${sizes}")

if(UPDATE)
    configure_file("${ACTUAL}" "${LIST}" COPYONLY)
    return()
endif()
execute_process(COMMAND diff -u "${LIST}" "${ACTUAL}" RESULT_VARIABLE different)
if(different)
    message(FATAL_ERROR "The interface has changed. If that is meant: build the target update-abi")
endif()
