# zv_ordered_sources(TARGET SOURCE...)
#
# Adds sources whose static initialisers run in the order in which the sources are named.
#
# ELF linkers and MSVC's run the initialisers of a library in link order, which is the order of the
# sources in the target. The start-up code of MinGW-w64 walks its list of constructors from the end,
# so there the sources are handed to the linker the other way round. The test LoadOrder proves the
# order on the platform at hand.
function(zv_ordered_sources target)
    set(sources ${ARGN})
    if(MINGW)
        list(REVERSE sources)
    endif()
    target_sources(${target} PRIVATE ${sources})
endfunction()
