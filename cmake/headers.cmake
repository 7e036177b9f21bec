# Header-only libraries of the build machine, for both targets. A cross compiler must not see the whole of /usr/include
# (it would find the machine's own C library there), so it gets a folder that holds links to just these.
add_library(zentrix_headers INTERFACE)
if(CMAKE_CROSSCOMPILING)
    set(header_links ${PROJECT_BINARY_DIR}/headers)
    file(MAKE_DIRECTORY ${header_links})
    foreach(library IN ITEMS boost CLI nlohmann stb xsimd)
        file(CREATE_LINK /usr/include/${library} ${header_links}/${library} SYMBOLIC)
    endforeach()
    target_include_directories(zentrix_headers SYSTEM INTERFACE ${header_links})
endif()
