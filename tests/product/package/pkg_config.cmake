# Builds SOURCE with the flags that pkg-config gives for the package in LIBDIR, and runs it.
set(ENV{PKG_CONFIG_PATH} "${LIBDIR}/pkgconfig")
execute_process(
    COMMAND "${PKG_CONFIG}" --cflags --libs zvutil
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY
)
separate_arguments(flags UNIX_COMMAND "${flags}")
execute_process(
    COMMAND "${COMPILER}" -std=c++17 -fPIC "${SOURCE}" -o "${PROGRAM}" ${flags} "-Wl,-rpath,${LIBDIR}"
    COMMAND_ERROR_IS_FATAL ANY
)
execute_process(COMMAND "${PROGRAM}" COMMAND_ERROR_IS_FATAL ANY)
