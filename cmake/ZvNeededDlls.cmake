# Sets ZV_NEEDED_DLLS to the files in ZV_DLL_FOLDER that ZV_FILES need to be loaded, and that those need. What isn't
# there is Windows' own. ZV_OBJDUMP reads the files; CMake's file(GET_RUNTIME_DEPENDENCIES) finds no DLL whose name
# has capitals where file names have case.
cmake_policy(VERSION 3.20)
set(ZV_NEEDED_DLLS)
while(ZV_FILES)
    list(POP_FRONT ZV_FILES file)
    execute_process(COMMAND "${ZV_OBJDUMP}" -p "${file}" OUTPUT_VARIABLE header COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "DLL Name: [^\r\n]+" names "${header}")
    list(TRANSFORM names REPLACE "^DLL Name: " "${ZV_DLL_FOLDER}/")
    foreach(dll IN LISTS names)
        if(EXISTS "${dll}" AND NOT dll IN_LIST ZV_NEEDED_DLLS)
            list(APPEND ZV_NEEDED_DLLS "${dll}")
            list(APPEND ZV_FILES "${dll}")
        endif()
    endforeach()
endwhile()
