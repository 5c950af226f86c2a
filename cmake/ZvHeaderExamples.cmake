# zv_header_examples(TARGET)
#
# Adds TARGET, which takes the examples out of the Doxygen comments of the headers below include/, so that a
# test can compile and run them. Each block from "/// @code{.cpp}" to "/// @endcode" goes into one of two
# files in the current binary directory:
#
#   header_examples.inc  for the test program to include, before any other header
#   program.cpp          the one example that is a whole program
#
# A block is one of three things:
#
# - A program, if it defines main. It becomes program.cpp; only one block may be one.
# - Declarations, if a line is a brace alone without indentation, as clang-format begins functions and
#   classes. They are put into the anonymous namespace within NAME_example, where NAME is the header's
#   path below include/zvutil without ".h", with "_" for what can't be in an identifier.
# - Statements otherwise. They become the function NAME_example::run, and must assert something.
#
# Lines with #include stand at the beginning of a block. In header_examples.inc the header itself is
# included before them. Messages of the compiler name the line in the header, and a function that the
# test doesn't call is an unused one, of which GCC warns.
#
# The same file is the script that the build runs:
#
#   cmake -DROOT=DIRECTORY -DOUTPUT=DIRECTORY -P ZvHeaderExamples.cmake

cmake_policy(VERSION 3.20)

# Moves the first line of the variable TEXT into the variable LINE, without its line feed.
function(zv_take_line TEXT LINE)
    string(FIND "${${TEXT}}" "\n" end)
    string(SUBSTRING "${${TEXT}}" 0 ${end} line)
    math(EXPR end "${end} + 1")
    string(SUBSTRING "${${TEXT}}" ${end} -1 rest)
    set(${LINE} "${line}" PARENT_SCOPE)
    set(${TEXT} "${rest}" PARENT_SCOPE)
endfunction()

# Adds the block CODE, whose first line is FIRST in HEADER, to the sources.
function(zv_add_example header first code)
    string(REGEX REPLACE "\\.h$" "" name "${header}")
    string(REGEX REPLACE "^zvutil/" "" name "${name}")
    string(MAKE_C_IDENTIFIER "${name}" name)
    set(includes)
    while(code MATCHES "^(#include|\n)")
        zv_take_line(code line)
        string(APPEND includes "${line}\n")
        math(EXPR first "${first} + 1")
    endwhile()
    set(position "#line ${first} \"${ROOT}/${header}\"\n")

    if(code MATCHES "(^|\n)int main\\(")
        get_property(program GLOBAL PROPERTY zv_program)
        if(program)
            message(FATAL_ERROR "${header}: there is another example that is a program")
        endif()
        set_property(GLOBAL PROPERTY zv_program "${includes}${position}${code}")
        return()
    endif()
    if(code MATCHES "(^|\n){\n")
        set(body "${position}${code}")
    elseif(code MATCHES "assert\\(")
        set(body "void run()\n{\n${position}${code}}\n")
    else()
        message(FATAL_ERROR "${header}:${first}: this example asserts nothing")
    endif()
    set_property(GLOBAL APPEND_STRING PROPERTY zv_examples
        "#include <${header}>\n${includes}namespace ${name}_example {\nnamespace {\n${body}}\n}\n"
    )
endfunction()

function(zv_extract_examples header)
    file(READ "${ROOT}/${header}" text)
    if(NOT text MATCHES "[@\\]code")
        return()
    endif()
    if(NOT text MATCHES "\n$")
        string(APPEND text "\n")
    endif()
    set(number 0)
    set(first 0)
    while(NOT text STREQUAL "")
        zv_take_line(text line)
        math(EXPR number "${number} + 1")
        if(line MATCHES "^ */// @code{\\.cpp}$")
            math(EXPR first "${number} + 1")
            set(code)
        elseif(line MATCHES "^ */// @endcode$")
            zv_add_example("${header}" ${first} "${code}")
            set(first 0)
        elseif(line MATCHES "[@\\]code")
            message(FATAL_ERROR "${header}:${number}: write @code{.cpp} on a line of its own")
        elseif(first)
            string(REGEX MATCH "^ */// ?" marks "${line}")
            string(LENGTH "${marks}" length)
            string(SUBSTRING "${line}" ${length} -1 line)
            string(APPEND code "${line}\n")
        endif()
    endwhile()
    if(first)
        message(FATAL_ERROR "${header}:${first}: this example has no end")
    endif()
endfunction()

function(zv_header_examples target)
    set(output "${CMAKE_CURRENT_BINARY_DIR}")
    set(script "${PROJECT_SOURCE_DIR}/cmake/ZvHeaderExamples.cmake")
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/include/*.h")
    add_custom_command(
        OUTPUT "${output}/header_examples.inc" "${output}/program.cpp"
        COMMAND "${CMAKE_COMMAND}" "-DROOT=${PROJECT_SOURCE_DIR}/include" "-DOUTPUT=${output}"
            -P "${script}"
        DEPENDS "${script}" ${headers}
        COMMENT "Taking the examples out of the public headers"
        VERBATIM
    )
    add_custom_target(${target} DEPENDS "${output}/header_examples.inc" "${output}/program.cpp")
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
    file(GLOB_RECURSE headers RELATIVE "${ROOT}" "${ROOT}/*.h")
    foreach(header IN LISTS headers)
        zv_extract_examples("${header}")
    endforeach()
    get_property(examples GLOBAL PROPERTY zv_examples)
    get_property(program GLOBAL PROPERTY zv_program)
    # Release builds define NDEBUG, with which the examples would assert nothing.
    file(WRITE "${OUTPUT}/header_examples.inc" "#undef NDEBUG\n${examples}")
    file(WRITE "${OUTPUT}/program.cpp" "${program}")
endif()
