# Header-only libraries of the build machine, for both targets. A cross compiler must not search all of /usr/include,
# which holds the build machine's C library. It searches a folder with links to these libraries only.
add_library(zentrix_headers INTERFACE)
if(CMAKE_CROSSCOMPILING)
    set(header_links ${PROJECT_BINARY_DIR}/headers)
    file(MAKE_DIRECTORY ${header_links})
    foreach(library IN ITEMS boost CLI nlohmann stb xsimd xxhash.h)
        file(CREATE_LINK /usr/include/${library} ${header_links}/${library} SYMBOLIC)
    endforeach()
    target_include_directories(zentrix_headers SYSTEM INTERFACE ${header_links})
endif()
