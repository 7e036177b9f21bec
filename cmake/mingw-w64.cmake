# Builds for 64-bit Windows on a Debian machine; Wine runs the tests.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH)  # the header-only libraries of the build machine serve both targets
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
# GCC assumes that an inline function changes no more registers than its copy in the same object. The linker may keep
# the copy of another object, compiled with other options, which changes more. On Linux, GCC does not assume this.
set(CMAKE_C_FLAGS_INIT "-fno-ipa-ra")
set(CMAKE_CXX_FLAGS_INIT "-fno-ipa-ra")
# Runtime libraries are linked statically, so that the DLL and the program run on a machine without them.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
# CMake would find the OpenMP runtime's import library first, which needs a DLL that other machines do not have.
execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libgomp.a OUTPUT_VARIABLE static_gomp
    OUTPUT_STRIP_TRAILING_WHITESPACE)
set(OpenMP_gomp_LIBRARY ${static_gomp} CACHE FILEPATH "OpenMP runtime")
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../tools/under-wine")
