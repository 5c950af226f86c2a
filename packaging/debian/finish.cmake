# Run by CPack when the packages are there, for what CPack can't say: ldconfig runs by a trigger instead of scripts, a
# library may be installed for several architectures at once, and of all shared objects only the libraries that others
# link against tell their names to the packages that need them.
cmake_policy(VERSION 3.20)

function(finish_library folder)
    set(control "${folder}/DEBIAN")
    file(REMOVE "${control}/postinst" "${control}/postrm")
    file(WRITE "${control}/triggers" "activate-noawait ldconfig\n")
    file(READ "${control}/control" fields)
    string(STRIP "${fields}" fields)
    file(WRITE "${control}/control" "${fields}\nMulti-Arch: same\n")

    string(REGEX MATCH "Package: ([^\n]+)" name "${fields}")
    set(name "${CMAKE_MATCH_1}")
    string(REGEX MATCH "Version: ([^\n]+)-[^\n]+" version "${fields}")
    set(version "${CMAKE_MATCH_1}")
    file(GLOB libraries "${folder}/usr/lib/*/lib*.so.[0-9]")
    set(lines)
    foreach(library IN LISTS libraries)
        string(REGEX MATCH "/([^/]+)\\.so\\.([0-9]+)$" library "${library}")
        string(APPEND lines "${CMAKE_MATCH_1} ${CMAKE_MATCH_2} ${name} (>= ${version})\n")
    endforeach()
    file(WRITE "${control}/shlibs" "${lines}")
endfunction()

foreach(package IN LISTS CPACK_PACKAGE_FILES)
    if(NOT package MATCHES "/libzvutil[0-9]+_[^/]*\\.deb$")
        continue()
    endif()
    set(folder "${CPACK_TEMPORARY_DIRECTORY}/finish")
    file(REMOVE_RECURSE "${folder}")
    execute_process(COMMAND dpkg-deb --raw-extract "${package}" "${folder}" COMMAND_ERROR_IS_FATAL ANY)
    finish_library("${folder}")
    execute_process(
        COMMAND dpkg-deb --root-owner-group --build -Zxz "${folder}" "${package}"
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY
    )
endforeach()
