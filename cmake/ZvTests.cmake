# What the folders of tests/ share.
#
# zv_add_test            a Qt Test program
# zv_add_property_test   a test that uses RapidCheck
# zv_skip_test           a test that can't run on this platform
# zv_add_test_helper     a program that tests start
# zv_repeat_on_display   a test's program once more, with a display
# zv_repeat_scaled       a test's program once more, on displays with several pixels to the widget's one
#
# Definitions for those that need them: ZV_PICTURES (PICTURES, the folder for pictures of what a user sees)
# and ZV_EXAMPLES (EXAMPLES, the folder of the examples). Under a sanitizer all see ZV_SANITIZED.

find_package(Qt5 5.15 REQUIRED COMPONENTS Test Widgets)
find_package(Qt5Xml 5.15 QUIET)
find_package(rapidcheck QUIET)
find_program(ZV_XVFB_RUN xvfb-run)
set(ZV_PICTURES "PICTURES=\"${PROJECT_BINARY_DIR}/pictures\"")
set(ZV_EXAMPLES "EXAMPLES=\"${PROJECT_SOURCE_DIR}/examples\"")
file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/pictures")

# ZV_ON_DISPLAY: the command that runs a program on a display of its own; empty if there is none.
set(ZV_ON_DISPLAY "")
set(ZV_DISPLAY_PLATFORM xcb)
if(ZV_XVFB_RUN AND CMAKE_CROSSCOMPILING AND WIN32)
    set(ZV_ON_DISPLAY ${CMAKE_CROSSCOMPILING_EMULATOR})
    list(INSERT ZV_ON_DISPLAY 1 --display)
    set(ZV_DISPLAY_PLATFORM windows)
elseif(ZV_XVFB_RUN AND NOT WIN32)
    set(ZV_ON_DISPLAY "${ZV_XVFB_RUN}" -a -s "-screen 0 1280x900x24")
endif()

# Properties are checked with the same texts each time; by hand a program makes new ones.
set(ZV_PROPERTY_PARAMETERS "RC_PARAMS=seed=20261121")
set(ZV_TEST_ENVIRONMENT "QT_QPA_PLATFORM=offscreen" "${ZV_PROPERTY_PARAMETERS}")
# What the platform's own libraries leak isn't looked at.
set(ZV_DISPLAY_ENVIRONMENT "QT_QPA_PLATFORM=${ZV_DISPLAY_PLATFORM}" "ASAN_OPTIONS=detect_leaks=0")
if(ZV_SANITIZE MATCHES "address")
    # Without it the sanitizer can't tell which leaks are known.
    find_program(ZV_SYMBOLIZER NAMES llvm-symbolizer-14 llvm-symbolizer REQUIRED)
    list(APPEND ZV_TEST_ENVIRONMENT
        "ASAN_SYMBOLIZER_PATH=${ZV_SYMBOLIZER}"
        "ASAN_OPTIONS=detect_stack_use_after_return=1:strict_string_checks=1"
        "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/lsan.supp:print_suppressions=0"
        "UBSAN_OPTIONS=print_stacktrace=1"
    )
elseif(ZV_SANITIZE STREQUAL "thread")
    # The distribution's QtCore hides its locks from the sanitizer; tools/build-qt-tsan makes one that doesn't.
    set(ZV_QT_TSAN "" CACHE PATH "Folder of a QtCore that is built with the thread sanitizer")
    if(NOT ZV_QT_TSAN)
        message(FATAL_ERROR "Tests under the thread sanitizer need ZV_QT_TSAN (see tools/build-qt-tsan)")
    endif()
    # This QtCore has been built for another prefix and would look there for the plugins.
    get_target_property(qmake Qt5::qmake IMPORTED_LOCATION)
    execute_process(COMMAND "${qmake}" -query QT_INSTALL_PLUGINS
        OUTPUT_VARIABLE plugins OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY
    )
    # With a longer history the sanitizer still knows the stack of an access that lies far back, without
    # which no suppression fits.
    list(APPEND ZV_TEST_ENVIRONMENT
        "LD_LIBRARY_PATH=${ZV_QT_TSAN}"
        "QT_NO_GLIB=1"
        "QT_PLUGIN_PATH=${plugins}"
        "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/tsan.supp:second_deadlock_stack=1:history_size=7"
    )
endif()

# zv_add_test(NAME [GUI] [XVFB] [THREADS] [FAULTS] [FIXTURE HEADER] [LIBRARIES TARGET...]
#     [DEFINITIONS DEFINITION...] [DEPENDS TARGET...])
#
# Adds the Qt Test program tst_NAME from tst_NAME.cpp as the test NAME. GUI tells that it makes a
# QGuiApplication, XVFB that it needs a display, which is one of its own, THREADS that it is also run under the
# thread sanitizer, FAULTS that it is also run with the tests of the package. FIXTURE names the header with the class that its test class is derived from.
function(zv_add_test name)
    cmake_parse_arguments(arg "GUI;XVFB;THREADS;FAULTS" "FIXTURE" "LIBRARIES;DEFINITIONS;DEPENDS" ${ARGN})
    if((ZV_TESTS STREQUAL "package" AND NOT arg_FAULTS)
        OR (ZV_TESTS STREQUAL "threads" AND NOT arg_THREADS))
        return()
    endif()
    add_executable(tst_${name} tst_${name}.cpp ${arg_FIXTURE})
    set_target_properties(tst_${name} PROPERTIES AUTOMOC ON)
    target_compile_definitions(tst_${name} PRIVATE ${arg_DEFINITIONS})
    if(ZV_SANITIZE)
        target_compile_definitions(tst_${name} PRIVATE ZV_SANITIZED)
    endif()
    target_link_libraries(tst_${name}
        PRIVATE zv_test_options zv_test_support Qt5::Test ${arg_LIBRARIES}
    )
    if(arg_DEPENDS)
        add_dependencies(tst_${name} ${arg_DEPENDS})
    endif()
    set(program tst_${name})
    set(environment "${ZV_TEST_ENVIRONMENT}")
    if(arg_XVFB)
        set(program ${ZV_ON_DISPLAY} $<TARGET_FILE:tst_${name}>)
        list(APPEND environment ${ZV_DISPLAY_ENVIRONMENT})
    endif()
    add_test(NAME ${name} COMMAND ${program})
    set_tests_properties(${name} PROPERTIES TIMEOUT 600 ENVIRONMENT "${environment}")
    if(arg_GUI AND ZV_SANITIZE MATCHES "address")
        # The platform plugin's leaks are known by a frame that only the slow unwinder finds.
        set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT "ASAN_OPTIONS=fast_unwind_on_malloc=0")
    endif()
    if(arg_THREADS)
        set_property(TEST ${name} APPEND PROPERTY LABELS threads)
    endif()
    if(arg_FAULTS)
        set_property(TEST ${name} APPEND PROPERTY LABELS faults)
    endif()
endfunction()

# zv_skip_test(NAME REASON): shows in CTest's list what isn't run here, and why.
function(zv_skip_test name reason)
    if(ZV_TESTS STREQUAL "all")
        add_test(NAME ${name} COMMAND "${CMAKE_COMMAND}" -E echo "Skipped: ${reason}")
        set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "Skipped: ")
        message(STATUS "Test ${name} is skipped: ${reason}")
    endif()
endfunction()

# zv_add_property_test(NAME [THREADS] [FIXTURE HEADER] [CASES NUMBER] [LIBRARIES TARGET...]): a test of the
# library that uses RapidCheck. CASES tells how many cases each property has, for those that are quick; RapidCheck
# makes 100.
function(zv_add_property_test name)
    cmake_parse_arguments(arg "THREADS" "FIXTURE;CASES" "LIBRARIES" ${ARGN})
    set(threads "")
    if(arg_THREADS)
        set(threads THREADS)
    endif()
    if(TARGET rapidcheck)
        zv_add_test(${name} ${threads}
            FIXTURE ${arg_FIXTURE}
            LIBRARIES rapidcheck zvutil::zvutil ${arg_LIBRARIES}
        )
        if(TEST ${name} AND arg_CASES)
            set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT
                "${ZV_PROPERTY_PARAMETERS} max_success=${arg_CASES}"
            )
        endif()
    else()
        zv_skip_test(${name} "there is no RapidCheck for this platform")
    endif()
endfunction()

# zv_add_test_helper(NAME [LIBRARIES TARGET...]): the program NAME from NAME.cpp. Tests that start it name
# it in their DEPENDS, or it isn't built.
function(zv_add_test_helper name)
    cmake_parse_arguments(arg "" "" "LIBRARIES" ${ARGN})
    add_executable(${name} EXCLUDE_FROM_ALL ${name}.cpp)
    target_link_libraries(${name} PRIVATE zv_test_options zv_test_support ${arg_LIBRARIES})
endfunction()

# zv_repeat_on_display(NAME [FUNCTION...]): the test NAME_xvfb, which runs the program of the test NAME, or some of its
# functions, on a display of its own.
function(zv_repeat_on_display name)
    if(NOT ZV_TESTS STREQUAL "all")
        return()
    endif()
    if(NOT ZV_ON_DISPLAY)
        zv_skip_test(${name}_xvfb "there is no Xvfb")
        return()
    endif()
    add_test(NAME ${name}_xvfb COMMAND ${ZV_ON_DISPLAY} $<TARGET_FILE:tst_${name}> ${ARGN})
    set_tests_properties(${name}_xvfb PROPERTIES TIMEOUT 600 ENVIRONMENT "${ZV_DISPLAY_ENVIRONMENT}")
endfunction()

# zv_repeat_scaled(NAME RATIO...): the tests NAME_RATIOx, which run the program of the test NAME with RATIO
# pixels to the widget's one.
function(zv_repeat_scaled name)
    if(NOT TEST ${name})
        return()
    endif()
    get_test_property(${name} ENVIRONMENT environment)
    foreach(ratio IN LISTS ARGN)
        add_test(NAME ${name}_${ratio}x COMMAND tst_${name})
        set_tests_properties(${name}_${ratio}x PROPERTIES
            TIMEOUT 600 ENVIRONMENT "${environment};QT_SCALE_FACTOR=${ratio}"
        )
    endforeach()
endfunction()
