# cmake --install build/release --prefix WHERE [--component program|python|development]
#
# program: the program and the library in one folder, the only one that the program searches. On Linux this is
#     lib/SYSTEM/zentrix64 with a link in bin/, on Windows the prefix itself: an archive runs where it is unpacked.
# python: the package with its own copy of the library, in Debian's dist-packages.
# development: for C++ callers of the warps.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
    WORLD_EXECUTE)
if(WIN32)
    set(program_folder .)
    set(documents_folder .)
else()
    set(program_folder lib/${CMAKE_LIBRARY_ARCHITECTURE}/zentrix64)
    set(documents_folder share/doc/zentrix)
endif()

if(ZENTRIX_PROGRAM)
    install(TARGETS zentrix_program RUNTIME DESTINATION ${program_folder} COMPONENT program)
    if(NOT WIN32)
        file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/linked)
        file(CREATE_LINK ../${program_folder}/zentrix ${PROJECT_BINARY_DIR}/linked/zentrix SYMBOLIC)
        install(FILES ${PROJECT_BINARY_DIR}/linked/zentrix DESTINATION bin COMPONENT program)
    endif()
endif()
install(TARGETS Zentrix64
    RUNTIME DESTINATION ${program_folder} COMPONENT program
    LIBRARY DESTINATION ${program_folder} COMPONENT program
    ARCHIVE DESTINATION lib COMPONENT development)
install(FILES README.md CHANGELOG.md LICENSE NOTICE DESTINATION ${documents_folder} COMPONENT program)
install(DIRECTORY docs examples DESTINATION ${documents_folder} COMPONENT program
    PATTERN CMakeLists.txt EXCLUDE PATTERN __pycache__ EXCLUDE)
install(FILES src/warp/warp.h DESTINATION include/zentrix64/warp COMPONENT development)
install(FILES src/image/image.h DESTINATION include/zentrix64/image COMPONENT development)

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
if(ZENTRIX_PROGRAM)
    include(cmake/packages.cmake)
endif()
