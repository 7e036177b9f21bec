# Builds for 64-bit Windows on a Debian machine; Wine runs what comes out.
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
# Runtime libraries go into each file, so that the DLL and the program can be copied to a machine as they are.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
# The search would find the OpenMP runtime's import library first, and with it a DLL that no other machine has.
execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libgomp.a OUTPUT_VARIABLE static_gomp
    OUTPUT_STRIP_TRAILING_WHITESPACE)
set(OpenMP_gomp_LIBRARY ${static_gomp} CACHE FILEPATH "OpenMP runtime")
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../tools/under-wine")
