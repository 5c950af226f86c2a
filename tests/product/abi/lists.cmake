# Compares the two lists of the interface. They differ in nothing but what the platforms do by themselves:
#
# - std::size_t is unsigned long on Linux and unsigned long long on Windows.
# - Windows exports all members of a class, also the one that Qt's moc hides on Linux.
# - Linux exports the names of types, and the type information of classes without virtual functions; on Windows each
#   module has its own. The linker for Linux adds symbols for the ends of the library.

cmake_policy(VERSION 3.20)

function(read_list file result)
    file(STRINGS "${CMAKE_CURRENT_LIST_DIR}/${file}" lines)
    list(FILTER lines EXCLUDE REGEX "^typeinfo name for |^typeinfo for zvutil::Zv(File)?Exception$")
    list(FILTER lines EXCLUDE REGEX "^(__bss_start|_edata|_end)$|::qt_static_metacall\\(")
    list(TRANSFORM lines REPLACE "unsigned long( long)?" "std::size_t")
    list(SORT lines)
    set(${result} "${lines}" PARENT_SCOPE)
endfunction()

read_list(linux.txt linux)
read_list(windows.txt windows)
list(LENGTH linux count)
if(count LESS 500)
    message(FATAL_ERROR "The list of Linux has only ${count} lines")
endif()
set(on_linux ${linux})
set(on_windows ${windows})
list(REMOVE_ITEM on_linux ${windows})
list(REMOVE_ITEM on_windows ${linux})
if(on_linux OR on_windows)
    list(JOIN on_linux "\n  " on_linux)
    list(JOIN on_windows "\n  " on_windows)
    message(FATAL_ERROR "The interfaces differ.\nOnly on Linux:\n  ${on_linux}\nOnly on Windows:\n  ${on_windows}")
endif()
