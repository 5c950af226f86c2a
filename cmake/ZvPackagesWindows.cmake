# What `cmake --build --preset windows --target package` makes: an archive that runs where it is unpacked,
# an installer, and an archive for developers.
#
# Components: library      the libraries that programs need to run
#             program      zvhost with its modules
#             dependencies what a machine with Windows lacks: Qt, the compiler's libraries, their licences
#             development  headers, import libraries, CMake files
set(qt "${ZV_QT_WINDOWS}")
if(NOT qt)
    get_target_property(qt Qt5::qmake IMPORTED_LOCATION)
    cmake_path(GET qt PARENT_PATH qt)
    cmake_path(GET qt PARENT_PATH qt)
endif()

# The plugins that Qt loads by itself. Vista's style is that of native dialogs and message boxes.
set(plugins
    iconengines/qsvgicon
    imageformats/qgif
    imageformats/qico
    imageformats/qjpeg
    imageformats/qsvg
    platforms/qwindows
    printsupport/windowsprintersupport
    styles/qwindowsvistastyle
)
set(plugin_files)
foreach(plugin IN LISTS plugins)
    set(file "${qt}/plugins/${plugin}.dll")
    if(NOT EXISTS "${file}")
        message(STATUS "No packages for Windows: this Qt has no plugin ${plugin}")
        return()
    endif()
    cmake_path(GET plugin PARENT_PATH folder)
    install(FILES "${file}" DESTINATION "plugins/${folder}" COMPONENT dependencies)
    list(APPEND plugin_files "${file}")
endforeach()
install(FILES "${PROJECT_SOURCE_DIR}/packaging/windows/qt.conf"
    DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT dependencies
)

# The libraries that those and the program need.
set(programs)
set(modules)
foreach(target zvhost zvhostw)
    if(TARGET ${target})
        list(APPEND programs "$<TARGET_FILE:${target}>")
    endif()
endforeach()
foreach(target zvworkbench workbench zvhost_files)
    if(TARGET ${target})
        list(APPEND modules "$<TARGET_FILE:${target}>")
    endif()
endforeach()
install(CODE "
    set(ZV_OBJDUMP \"${CMAKE_OBJDUMP}\")
    set(ZV_DLL_FOLDER \"${qt}/bin\")
    set(ZV_FILES $<TARGET_FILE:zvutil> ${programs} ${modules} ${plugin_files})
    include(\"${PROJECT_SOURCE_DIR}/cmake/ZvNeededDlls.cmake\")
    file(INSTALL \${ZV_NEEDED_DLLS} DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}\")
" COMPONENT dependencies)

# Their licences. The distribution keeps those of its packages beside them.
configure_file("${PROJECT_SOURCE_DIR}/packaging/windows/LICENCES.txt"
    "${PROJECT_BINARY_DIR}/packages/LICENCES.txt" NEWLINE_STYLE WIN32
)
install(FILES "${PROJECT_BINARY_DIR}/packages/LICENCES.txt"
    DESTINATION licences COMPONENT dependencies
)
install(DIRECTORY "${qt}/licenses/" DESTINATION licences/qt COMPONENT dependencies)
foreach(package g++-mingw-w64-x86-64-posix mingw-w64-common libspdlog-dev libfmt-dev)
    install(FILES "/usr/share/doc/${package}/copyright"
        DESTINATION "licences/${package}" COMPONENT dependencies
    )
endforeach()
foreach(licence Apache-2.0 GPL-2 GPL-3 LGPL-2.1 LGPL-3)
    install(FILES "/usr/share/common-licenses/${licence}"
        DESTINATION licences/common-licences COMPONENT dependencies
    )
endforeach()

set(CPACK_GENERATOR ZIP NSIS)
set(CPACK_COMPONENTS_ALL library program dependencies development)
set(CPACK_PACKAGE_NAME zvutil)
set(CPACK_PACKAGE_VENDOR "The developers of libzvutil")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_INSTALL_DIRECTORY zvutil)
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
# Both archives have the same folder, so that the one for developers is unpacked onto the other.
set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
set(CPACK_PACKAGE_FILE_NAME "zvutil-${PROJECT_VERSION}-win64")
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_ARCHIVE_USERS_FILE_NAME "${CPACK_PACKAGE_FILE_NAME}")
set(CPACK_ARCHIVE_DEVELOPERS_FILE_NAME "zvutil-dev-${PROJECT_VERSION}-win64")
set(CPACK_PROJECT_CONFIG_FILE "${PROJECT_SOURCE_DIR}/packaging/windows/installer.cmake")
set(CPACK_NSIS_PACKAGE_NAME "zvutil ${PROJECT_VERSION}")
set(CPACK_NSIS_DISPLAY_NAME "zvutil ${PROJECT_VERSION}")
set(CPACK_NSIS_MUI_ICON "${PROJECT_SOURCE_DIR}/packaging/icons/zvhost.ico")
set(CPACK_NSIS_MUI_UNIICON "${CPACK_NSIS_MUI_ICON}")
set(CPACK_NSIS_INSTALLED_ICON_NAME "bin/zvhostw.exe")
set(CPACK_NSIS_ENABLE_UNINSTALL_BEFORE_INSTALL ON)
set(CPACK_NSIS_UNINSTALL_NAME uninstall)
set(CPACK_PACKAGE_EXECUTABLES zvhostw "Workbench")
# CPack's own commands leave the vendor's key behind.
set(CPACK_NSIS_DELETE_ICONS_EXTRA "DeleteRegKey /ifempty SHCTX \"Software\\${CPACK_PACKAGE_VENDOR}\"")
if(CMAKE_HOST_UNIX)
    set(CPACK_NSIS_EXECUTABLE "${PROJECT_SOURCE_DIR}/packaging/windows/makensis64")
endif()
include(CPack)

cpack_add_component_group(users DISPLAY_NAME "Workbench"
    DESCRIPTION "The host program, its workbench and what they need"
)
cpack_add_component_group(developers DISPLAY_NAME "Development files"
    DESCRIPTION "Headers, import libraries and CMake files"
)
foreach(component library program dependencies)
    cpack_add_component(${component} GROUP users REQUIRED HIDDEN)
endforeach()
cpack_add_component(development GROUP developers DISABLED
    DISPLAY_NAME "Headers, import libraries and CMake files"
)
