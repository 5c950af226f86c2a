# Installs the build tree BUILD below the folder WORK, and removes what earlier runs left there.
set(PREFIX "${WORK}/prefix")
file(REMOVE_RECURSE "${PREFIX}" "${WORK}/consumer" "${WORK}/external"
    "${WORK}/parts_list" "${WORK}/search"
)
execute_process(
    COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${PREFIX}"
    COMMAND_ERROR_IS_FATAL ANY
)
file(GLOB_RECURSE private_headers "${PREFIX}/include/*_p.h" "${PREFIX}/include/zvutil/src/*")
if(private_headers)
    message(FATAL_ERROR "Private headers were installed: ${private_headers}")
endif()
if(EXISTS "${PREFIX}/bin/zvhost")
    execute_process(
        COMMAND "${PREFIX}/bin/zvhost" -e "print(PathToURI('installed'))"
        OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY
    )
    if(NOT output STREQUAL "file:///installed\n")
        message(FATAL_ERROR "The installed zvhost answered '${output}'")
    endif()
endif()
