# Read by CPack once for each kind of package.
if(CPACK_GENERATOR STREQUAL "NSIS")
    set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY OFF)
    string(APPEND CPACK_PACKAGE_FILE_NAME "-setup")
endif()
