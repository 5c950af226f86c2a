# Builds each program in the folder SOURCES with the flags that pkg-config gives for the package in LIBDIR, and runs it.
set(ENV{PKG_CONFIG_PATH} "${LIBDIR}/pkgconfig")
execute_process(
    COMMAND "${PKG_CONFIG}" --cflags --libs zvutil
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY
)
separate_arguments(flags UNIX_COMMAND "${flags}")
# The flags have to be enough, also for a compiler that makes no position-independent programs by itself.
foreach(kind -pie -no-pie)
    foreach(source IN ITEMS "${SOURCES}/main.cpp" "${SOURCES}/path.cpp")
        execute_process(
            COMMAND "${COMPILER}" ${kind} "${source}" -o "${PROGRAM}" ${flags} "-Wl,-rpath,${LIBDIR}"
            COMMAND_ERROR_IS_FATAL ANY
        )
        execute_process(COMMAND "${PROGRAM}" COMMAND_ERROR_IS_FATAL ANY)
    endforeach()
endforeach()
