# Windows on x86-64, from Debian: the compiler of g++-mingw-w64-x86-64-posix, and the libraries that packaging/windows/build
# makes.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
get_filename_component(VELMORA_WINDOWS_LIBRARIES ${CMAKE_CURRENT_LIST_DIR}/../../build/windows-libraries/prefix ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH ${VELMORA_WINDOWS_LIBRARIES} /usr/x86_64-w64-mingw32)
# Headers alone, kept where Debian has them.
execute_process(COMMAND gcc -print-multiarch OUTPUT_VARIABLE multiarch OUTPUT_STRIP_TRAILING_WHITESPACE)
set(QCoro6_DIR ${VELMORA_WINDOWS_LIBRARIES}/lib/${multiarch}/cmake/QCoro6)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Qt's tools run while Qt and Velmora are built: those of this machine.
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/${multiarch}/cmake)
# What is built runs in the build too, and in tests.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine)
