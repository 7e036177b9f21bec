# cmake --install build/release --prefix WHERE. Program and library go to bin/, because the program searches only its
# own folder. The Python package has its own copy in Debian's dist-packages. The headers are for C++ callers of the
# warps.
if(ZENTRIX_PROGRAM)
    install(TARGETS zentrix_program RUNTIME DESTINATION bin)
endif()
install(TARGETS Zentrix64 RUNTIME DESTINATION bin LIBRARY DESTINATION bin ARCHIVE DESTINATION lib)
install(FILES src/warp/warp.h DESTINATION include/zentrix64/warp)
install(FILES src/image/image.h DESTINATION include/zentrix64/image)
install(FILES README.md CHANGELOG.md LICENSE NOTICE DESTINATION share/doc/zentrix64)
install(DIRECTORY docs examples DESTINATION share/doc/zentrix64
    PATTERN CMakeLists.txt EXCLUDE PATTERN __pycache__ EXCLUDE)
if(NOT WIN32)
    set(ZENTRIX_PYTHON_FOLDER lib/python${Python_VERSION_MAJOR}.${Python_VERSION_MINOR}/dist-packages/zentrix CACHE STRING
        "Folder of the Python package, relative to the prefix")
    install(TARGETS zentrix_python Zentrix64 LIBRARY DESTINATION ${ZENTRIX_PYTHON_FOLDER} COMPONENT python)
    install(FILES ${python_package_files} DESTINATION ${ZENTRIX_PYTHON_FOLDER} COMPONENT python)
    install(FILES ${python_panel_files} DESTINATION ${ZENTRIX_PYTHON_FOLDER}/_panel COMPONENT python)
    # The package alone, for pip (setup.py): builds nothing that it does not need.
    add_custom_target(install_python
        COMMAND ${CMAKE_COMMAND} --install ${PROJECT_BINARY_DIR} --component python
        DEPENDS zentrix_python Zentrix64 VERBATIM)
endif()
