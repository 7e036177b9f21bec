# Packages of the component `program`, by CPack: .deb in a build for Linux, .zip in one for Windows.
# tools/make-packages builds and makes them.
set(CPACK_PACKAGE_NAME zentrix)
set(CPACK_PACKAGE_VENDOR "the Zentrix64 developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Corrects and simulates the lens aberrations of electron waves")
set(CPACK_INSTALL_CMAKE_PROJECTS ${PROJECT_BINARY_DIR} ${PROJECT_NAME} program /)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_VERBATIM_VARIABLES ON)

# The licences of what is linked or compiled in, as Debian's packages have them.
set(licensed fftw3:libfftw3-dev nlopt:libnlopt-dev tiff:libtiff-dev cli11:libcli11-dev nlohmann-json:nlohmann-json3-dev
    xsimd:libxsimd-dev xxhash:libxxhash-dev boost:libboost-dev stb:libstb-dev dejavu-fonts:fonts-dejavu-core)
if(WIN32)
    list(APPEND licensed zlib:libz-mingw-w64-dev gcc-runtime:gcc-mingw-w64-x86-64-posix-runtime
        mingw-w64-runtime:mingw-w64-x86-64-dev)
endif()
foreach(entry IN LISTS licensed)
    string(REPLACE ":" ";" entry ${entry})
    list(GET entry 0 name)
    list(GET entry 1 package)
    install(FILES /usr/share/doc/${package}/copyright DESTINATION ${documents_folder}/licences RENAME ${name}.txt
        COMPONENT program OPTIONAL)
endforeach()

if(WIN32)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_PACKAGE_FILE_NAME zentrix-${PROJECT_VERSION}-windows64)
    install(FILES /usr/share/common-licenses/GPL-2 /usr/share/common-licenses/LGPL-2.1 DESTINATION licences
        COMPONENT program OPTIONAL)
else()
    set(CPACK_GENERATOR DEB)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(ZENTRIX_MAINTAINER "The Zentrix64 developers <zentrix64@localhost>" CACHE STRING
        "Name and address in the .deb: of who passes it on")
    set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${ZENTRIX_MAINTAINER})
    set(CPACK_DEBIAN_PACKAGE_SECTION science)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
    set(CPACK_PACKAGE_DESCRIPTION
"Removes the aberrations of an electron microscope's lens from recorded waves,
or applies them; unwraps phases; filters, measures and transforms images.
.
This package has the command line and the library with the script functions.")
    # What Debian's policy asks for: a file of all licences, and the changes of program and package.
    file(READ LICENSE licence)
    file(READ NOTICE notice)
    file(WRITE ${PROJECT_BINARY_DIR}/debian/copyright "${notice}\n${licence}")
    string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
    file(WRITE ${PROJECT_BINARY_DIR}/debian/changelog
"zentrix (${PROJECT_VERSION}-1) stable; urgency=medium

  * See changelog.gz.

 -- ${CPACK_DEBIAN_PACKAGE_MAINTAINER}  ${date}
")
    foreach(pair IN ITEMS CHANGELOG.md:changelog.gz ${PROJECT_BINARY_DIR}/debian/changelog:changelog.Debian.gz)
        string(REPLACE ":" ";" pair ${pair})
        list(GET pair 0 from)
        list(GET pair 1 to)
        execute_process(COMMAND ${GZIP} -9nc ${from} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
            OUTPUT_FILE ${PROJECT_BINARY_DIR}/debian/${to} COMMAND_ERROR_IS_FATAL ANY)
        install(FILES ${PROJECT_BINARY_DIR}/debian/${to} DESTINATION ${documents_folder} COMPONENT program)
    endforeach()
    install(FILES ${PROJECT_BINARY_DIR}/debian/copyright DESTINATION ${documents_folder} COMPONENT program)
endif()
include(CPack)
