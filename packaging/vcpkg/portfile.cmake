# For an overlay of vcpkg: vcpkg install zvutil --overlay-ports=packaging/vcpkg
cmake_path(SET SOURCE_PATH NORMALIZE "${CURRENT_PORT_DIR}/../..")
vcpkg_check_linkage(ONLY_DYNAMIC_LIBRARY)

vcpkg_cmake_configure(
    SOURCE_PATH "${SOURCE_PATH}"
    OPTIONS -DZV_TESTS=none -DZV_PROGRAM=OFF
)
vcpkg_cmake_install()
foreach(package HostSupport DockFramework zv_logging zvutil)
    vcpkg_cmake_config_fixup(
        PACKAGE_NAME "${package}" CONFIG_PATH "lib/cmake/${package}" DO_NOT_DELETE_PARENT_CONFIG_PATH
    )
endforeach()
vcpkg_fixup_pkgconfig()
vcpkg_copy_pdbs()
file(REMOVE_RECURSE
    "${CURRENT_PACKAGES_DIR}/debug/include"
    "${CURRENT_PACKAGES_DIR}/debug/lib/cmake"
    "${CURRENT_PACKAGES_DIR}/debug/share"
    "${CURRENT_PACKAGES_DIR}/lib/cmake"
)
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/packaging/debian/copyright")
