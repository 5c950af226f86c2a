# Runs PROGRAM in GDB to its last line and compares what GDB prints of its variables. LIBRARIES is the
# folder of the library, beside which the printers lie.
file(STRINGS "${SOURCE}" lines)
set(number 0)
foreach(line IN LISTS lines)
    math(EXPR number "${number} + 1")
    if(line MATCHES "the breakpoint")
        set(breakpoint "${number}")
    endif()
endforeach()

set(names
    path emptyPath narrow units codes wide uri handle plainId id appendable wideAppendable source target
    table noTable
)
set(expected
    [["C:\\a b/€"]] [[""]] [["say \"hi\""]] [["𝄞!"]] [["𝄞!"]] [["𝄞!"]] [["http://srv/a%20b"]]
    [["a%20b"]] [["3F25"]] [["3F2504E0"]] [["say \"hi\""]] [["𝄞!"]] [[<moved from>]] [["gone"]]
    [[2 rows, 3 columns]] [[<no storage>]]
)
set(prints)
foreach(name IN LISTS names)
    list(APPEND prints -ex "print ${name}")
endforeach()
set(ENV{LC_ALL} C.UTF-8)
execute_process(
    COMMAND "${GDB}" -nx -batch -iex "add-auto-load-safe-path ${LIBRARIES}"
        -iex "set debuginfod enabled off" -ex "break subject.cpp:${breakpoint}" -ex run ${prints} "${PROGRAM}"
    OUTPUT_VARIABLE output ERROR_VARIABLE errors
)
set(number 0)
foreach(name value IN ZIP_LISTS names expected)
    # GDB counts what it prints.
    math(EXPR number "${number} + 1")
    string(FIND "${output}" "$${number} = ${value}\n" found)
    if(found EQUAL -1)
        message(FATAL_ERROR "GDB doesn't show ${name} as ${value}:\n${output}\n${errors}")
    endif()
endforeach()
