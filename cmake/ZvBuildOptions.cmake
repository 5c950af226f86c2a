# The compiler settings that every target of the project shares.
#
# zv_build_options      link it PRIVATE: warnings, Qt's strictness macros
# zv_test_options       the same for tests, in which a literal may stand for a QString
# zv_unloadable(TARGET) settings without which a shared library can't leave the process again

include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

add_library(zv_test_options INTERFACE)
target_compile_definitions(
    zv_test_options
    INTERFACE QT_NO_KEYWORDS QT_NO_FOREACH QT_DEPRECATED_WARNINGS QT_NO_CAST_TO_ASCII
              QT_NO_URL_CAST_FROM_STRING
)
add_library(zv_build_options INTERFACE)
target_compile_definitions(zv_build_options INTERFACE QT_NO_CAST_FROM_ASCII)
target_link_libraries(zv_build_options INTERFACE zv_test_options)
if(WIN32)
    target_compile_definitions(zv_test_options INTERFACE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN)
endif()
if(MINGW)
    # GCC exports the type information of all classes, hidden ones too, if std::type_info isn't declared before the
    # first exported class.
    target_compile_options(zv_build_options
        INTERFACE "$<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:SHELL:-include typeinfo>"
    )
endif()
if(MSVC)
    # 4251 and 4275 ask for exports of private members and of standard base classes.
    target_compile_options(zv_test_options
        INTERFACE /W4 /permissive- /utf-8 /Zc:__cplusplus /wd4251 /wd4275
    )
    if(ZV_WARNINGS_AS_ERRORS)
        target_compile_options(zv_test_options INTERFACE /WX)
    endif()
else()
    target_compile_options(
        zv_test_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
                                   -Woverloaded-virtual -Wcast-align -Wnull-dereference
    )
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_BUILD_TYPE MATCHES "Release|RelWithDebInfo")
        # GCC 12 finds null dereferences in the standard library's own headers when it optimises.
        target_compile_options(zv_test_options INTERFACE -Wno-null-dereference)
    endif()
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        # Qt Test's macros are variadic and take no argument more often than not.
        target_compile_options(zv_test_options INTERFACE -Wno-gnu-zero-variadic-macro-arguments)
    endif()
    if(ZV_WARNINGS_AS_ERRORS)
        target_compile_options(zv_test_options INTERFACE -Werror)
    endif()
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND NOT WIN32)
    # It links a test of the sanitizers in a third of the time.
    check_linker_flag(CXX -fuse-ld=lld ZV_HAVE_LLD)
    if(ZV_HAVE_LLD)
        add_link_options(-fuse-ld=lld)
    endif()
endif()
if(ZV_SANITIZE)
    add_compile_options(-fsanitize=${ZV_SANITIZE} -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${ZV_SANITIZE})
    if(ZV_SANITIZE MATCHES "undefined")
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
elseif(NOT WIN32 AND NOT APPLE)
    # Sanitizers leave symbols to their run-time library; without one everything must resolve.
    foreach(type SHARED MODULE)
        add_link_options($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,${type}_LIBRARY>:-Wl,--no-undefined>)
    endforeach()
endif()
if(ZV_COVERAGE)
    add_compile_options(--coverage -fprofile-update=atomic)
    add_link_options(--coverage)
endif()
if(ZV_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "ZV_FUZZ needs Clang: libFuzzer comes with it")
    endif()
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

check_cxx_compiler_flag(-fno-gnu-unique ZV_HAVE_NO_GNU_UNIQUE)
function(zv_unloadable target)
    if(ZV_HAVE_NO_GNU_UNIQUE)
        # A unique symbol pins its library in the process for good.
        target_compile_options(${target} PRIVATE -fno-gnu-unique)
    endif()
endfunction()
