# What the preset `package` makes besides the build: the target `package` packages for Debian, the target
# `package_source` an archive of the sources.
#
# Components: library        the libraries that programs need to run
#             program        zvhost with its modules, and what desktops and shells show of it
#             development    headers, links for the linker, CMake files, the plugin of Qt Designer
#             documentation  texts for people who write programs with the library

# zv_install_packed(FILE NAME DESTINATION COMPONENT): installs the file as NAME.gz, as Debian wants pages and changelogs.
function(zv_install_packed file name destination component)
    find_program(ZV_GZIP gzip REQUIRED)
    set(packed "${PROJECT_BINARY_DIR}/packed/${component}/${name}.gz")
    cmake_path(GET packed PARENT_PATH folder)
    file(MAKE_DIRECTORY "${folder}")
    execute_process(
        COMMAND "${ZV_GZIP}" -9nc "${file}" OUTPUT_FILE "${packed}" COMMAND_ERROR_IS_FATAL ANY
    )
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
    install(FILES "${packed}" DESTINATION "${destination}" COMPONENT ${component})
endfunction()

install(FILES "${PROJECT_SOURCE_DIR}/README.md" DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documentation)
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    zv_install_packed("${PROJECT_SOURCE_DIR}/CHANGELOG.md" changelog "${CMAKE_INSTALL_DOCDIR}" documentation)
else()
    install(FILES "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
        DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documentation
    )
endif()
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs" DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documentation
    FILES_MATCHING PATTERN "*.md" PATTERN "*.png"
)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples" DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documentation)

set(desktop "${PROJECT_SOURCE_DIR}/packaging/linux")
if(TARGET zvhost)
    install(FILES "${desktop}/zvhost.desktop"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/applications" COMPONENT program
    )
    install(FILES "${desktop}/zvhost.xml" DESTINATION "${CMAKE_INSTALL_DATADIR}/mime/packages" COMPONENT program)
    install(FILES "${PROJECT_SOURCE_DIR}/packaging/icons/zvhost.svg"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps" COMPONENT program
    )
    install(FILES "${desktop}/zvhost.bash" RENAME zvhost
        DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT program
    )
    configure_file("${desktop}/zvhost.1.in" "${PROJECT_BINARY_DIR}/packed/zvhost.1" @ONLY)
    zv_install_packed("${PROJECT_BINARY_DIR}/packed/zvhost.1" zvhost.1 "${CMAKE_INSTALL_MANDIR}/man1" program)
endif()

set(CPACK_PACKAGE_NAME zvutil)
# Each package has a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_VENDOR "The developers of libzvutil")
set(CPACK_PACKAGE_CONTACT "The developers of libzvutil <zvutil@example.org>")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_SOURCE_GENERATOR TXZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME "zvutil-${PROJECT_VERSION}")
# Builds, the history, and what editors leave. The patterns are for whole paths.
string(REGEX REPLACE "([][+.*()^$?\\|])" "\\\\\\1" sources "${PROJECT_SOURCE_DIR}")
set(CPACK_SOURCE_IGNORE_FILES
    "^${sources}/build/" "^${sources}/\\.git(/|$)" "^${sources}/CMakeUserPresets\\.json$" "/__pycache__/" "~$"
    "\\.user$"
)

# Only an installation below /usr has the folders of the distribution.
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    set(CPACK_GENERATOR "External")
    set(CPACK_EXTERNAL_PACKAGE_SCRIPT "${PROJECT_SOURCE_DIR}/packaging/debian/refuse.cmake")
    set(CPACK_EXTERNAL_ENABLE_STAGING OFF)
    include(CPack)
    return()
endif()

set(library_package "libzvutil${PROJECT_VERSION_MAJOR}")
set(packages "library:${library_package}" development:libzvutil-dev documentation:libzvutil-doc)
if(TARGET zvhost)
    list(APPEND packages program:zvhost)
endif()
set(texts "${PROJECT_SOURCE_DIR}/packaging/debian")
set(CPACK_COMPONENTS_ALL)
foreach(pair IN LISTS packages)
    string(REGEX MATCH "^(.*):(.*)$" pair "${pair}")
    set(component "${CMAKE_MATCH_1}")
    set(package "${CMAKE_MATCH_2}")
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    string(TOUPPER "${component}" upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME "${package}")
    file(READ "${texts}/${component}.description" CPACK_DEBIAN_${upper}_DESCRIPTION)
    string(STRIP "${CPACK_DEBIAN_${upper}_DESCRIPTION}" CPACK_DEBIAN_${upper}_DESCRIPTION)
    zv_install_packed("${texts}/changelog" changelog.Debian "${CMAKE_INSTALL_DATADIR}/doc/${package}" ${component})
    install(FILES "${texts}/copyright"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}" COMPONENT ${component}
    )
    if(EXISTS "${texts}/${component}.lintian-overrides")
        install(FILES "${texts}/${component}.lintian-overrides" RENAME "${package}"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides" COMPONENT ${component}
        )
    endif()
endforeach()

# The packages' revision stands in the changelog alone.
file(STRINGS "${texts}/changelog" newest LIMIT_COUNT 1)
if(NOT newest MATCHES "^zvutil \\(${PROJECT_VERSION}-([0-9]+)\\) ")
    message(FATAL_ERROR "${texts}/changelog does not begin with version ${PROJECT_VERSION}, but with: ${newest}")
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE "${CMAKE_MATCH_1}")

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE zvutil)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_THREADS 0) # as many as there are processors
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE
)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Our own libraries aren't installed yet; what needs them names their package.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)

set(same "${library_package} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
# The styles' icons, which Qt reads by a plugin.
set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS libqt5svg5)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${same}, qtbase5-dev (>= 5.15)")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS libzvutil-doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "${same}")
set(CPACK_POST_BUILD_SCRIPTS "${texts}/finish.cmake")
include(CPack)
