# cmake --install build/release --prefix WHERE: the program and the library in one folder, since the program loads the
# library from no other; the Python package, for the same reason with a library of its own, in the folder that Debian's
# interpreter searches below its prefixes; the headers that a C++ module needs to call the warps.
install(TARGETS zentrix_program RUNTIME DESTINATION bin)
install(TARGETS Zentrix64 RUNTIME DESTINATION bin LIBRARY DESTINATION bin ARCHIVE DESTINATION lib)
install(FILES src/warp/warp.h DESTINATION include/zentrix64/warp)
install(FILES src/image/image.h DESTINATION include/zentrix64/image)
install(FILES README.md CHANGELOG.md LICENSE DESTINATION share/doc/zentrix64)
install(DIRECTORY docs examples DESTINATION share/doc/zentrix64
    PATTERN CMakeLists.txt EXCLUDE PATTERN __pycache__ EXCLUDE)
if(NOT WIN32)
    set(python_folder lib/python${Python_VERSION_MAJOR}.${Python_VERSION_MINOR}/dist-packages/zentrix)
    install(TARGETS zentrix_python Zentrix64 LIBRARY DESTINATION ${python_folder})
    install(FILES ${python_package_files} DESTINATION ${python_folder})
endif()
