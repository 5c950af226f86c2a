# zv_install_package(TARGET [DEPENDENCIES "Qt5 5.15 COMPONENTS Core" ...])
#
# Installs a library with its headers and a CMake package of its name, whose target is TARGET::TARGET. The library
# has the version of the project.
function(zv_install_package target)
    cmake_parse_arguments(arg "" "" "DEPENDENCIES" ${ARGN})
    set_target_properties(${target} PROPERTIES
        VERSION "${PROJECT_VERSION}" SOVERSION "${PROJECT_VERSION_MAJOR}"
    )
    install(TARGETS ${target} EXPORT ${target}Targets
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT library
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT library NAMELINK_COMPONENT development
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development
    )
    foreach(tree "${CMAKE_CURRENT_SOURCE_DIR}/include/" "${CMAKE_CURRENT_BINARY_DIR}/include/")
        install(DIRECTORY "${tree}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT development
            FILES_MATCHING PATTERN "*.h"
        )
    endforeach()

    set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/${target}")
    set(config "${CMAKE_CURRENT_BINARY_DIR}/${target}Config.cmake")
    set(lines "include(CMakeFindDependencyMacro)\n")
    foreach(dependency IN LISTS arg_DEPENDENCIES)
        string(APPEND lines "find_dependency(${dependency})\n")
    endforeach()
    string(APPEND lines "include(\"\${CMAKE_CURRENT_LIST_DIR}/${target}Targets.cmake\")\n")
    file(WRITE "${config}" "${lines}")
    write_basic_package_version_file("${CMAKE_CURRENT_BINARY_DIR}/${target}ConfigVersion.cmake"
        VERSION "${PROJECT_VERSION}" COMPATIBILITY SameMinorVersion
    )
    install(EXPORT ${target}Targets NAMESPACE ${target}:: DESTINATION "${package_dir}"
        COMPONENT development
    )
    install(FILES "${config}" "${CMAKE_CURRENT_BINARY_DIR}/${target}ConfigVersion.cmake"
        DESTINATION "${package_dir}" COMPONENT development
    )
endfunction()
