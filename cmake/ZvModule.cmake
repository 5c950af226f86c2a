# zv_module(TARGET SOURCE...): a module of zvhost, which finds it by its name in the folder of modules.
function(zv_module target)
    add_library(${target} MODULE ${ARGN})
    set(folder "${CMAKE_INSTALL_LIBDIR}/${ZV_MODULE_FOLDER}")
    file(RELATIVE_PATH to_libraries
        "${CMAKE_INSTALL_PREFIX}/${folder}" "${CMAKE_INSTALL_FULL_LIBDIR}"
    )
    set_target_properties(${target} PROPERTIES
        PREFIX ""
        LIBRARY_OUTPUT_DIRECTORY "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/${ZV_MODULE_FOLDER}"
        INSTALL_RPATH "$ORIGIN/${to_libraries}"
    )
    install(TARGETS ${target} LIBRARY DESTINATION "${folder}" COMPONENT program)
endfunction()
