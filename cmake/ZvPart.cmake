# zv_part(NAME SOURCES SOURCE... [ORDERED_SOURCES SOURCE...] [POSIX_SOURCES SOURCE...]
#     [WINDOWS_SOURCES SOURCE...] [USES NAME...])
#
# States a hidden part of the library, which lies in the folder NAME, once: its sources go into the library,
# and into the static library zv_part_NAME for tests, benchmarks and fuzz targets, since the library
# doesn't export them. That one is built on demand. ORDERED_SOURCES are those that register something while
# the library loads: the library's own list names them, since their place in it matters.
function(zv_part name)
    cmake_parse_arguments(arg "" "" "SOURCES;ORDERED_SOURCES;POSIX_SOURCES;WINDOWS_SOURCES;OBJECTS;USES" ${ARGN})
    set(sources ${arg_SOURCES})
    if(WIN32)
        list(APPEND sources ${arg_WINDOWS_SOURCES})
    else()
        list(APPEND sources ${arg_POSIX_SOURCES})
    endif()
    list(TRANSFORM sources PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/${name}/")
    list(TRANSFORM arg_ORDERED_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/${name}/")
    foreach(target IN LISTS arg_OBJECTS)
        list(APPEND sources $<TARGET_OBJECTS:${target}>)
    endforeach()
    target_sources(zvutil PRIVATE ${sources})

    set(part zv_part_${name})
    add_library(${part} STATIC EXCLUDE_FROM_ALL ${sources} ${arg_ORDERED_SOURCES})
    set_target_properties(${part} PROPERTIES AUTOMOC ON)
    target_include_directories(${part} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    list(TRANSFORM arg_USES PREPEND zv_part_)
    target_link_libraries(${part}
        PUBLIC ${arg_USES} zvutil::zvutil zv_logging::zv_logging
        PRIVATE zv_build_options zv_base HostSupport::HostSupport
    )
endfunction()
