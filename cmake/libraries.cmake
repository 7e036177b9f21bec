# Libraries that are linked: zentrix_fftw, zentrix_tiff, zentrix_nlopt. They are Debian packages; for Windows, where
# Debian has none, tools/build-windows-libraries builds static ones from the source packages.

# zentrix_library(NAME HEADER FILE...): the imported target zentrix_NAME. FILE... are names without "lib" and ending, in
# linking order; HEADER is one that the build fails without.
function(zentrix_library name header)
    add_library(zentrix_${name} INTERFACE)
    if(WIN32)
        set(folder ${PROJECT_SOURCE_DIR}/build/${name}-windows)
        execute_process(COMMAND ${PROJECT_SOURCE_DIR}/tools/build-windows-libraries ${name} RESULT_VARIABLE failed)
        if(failed)
            message(FATAL_ERROR
                "${folder} is missing, because tools/build-windows-libraries failed; see its message above.")
        endif()
        target_include_directories(zentrix_${name} SYSTEM INTERFACE ${folder}/include)
        list(GET ARGN -1 file)  # the others are parts of shared libraries only
        target_link_libraries(zentrix_${name} INTERFACE ${folder}/lib/lib${file}.a)
    else()
        find_path(ZENTRIX_${name}_HEADER ${header} REQUIRED)
        foreach(file IN LISTS ARGN)
            find_library(ZENTRIX_${file}_LIBRARY ${file} REQUIRED)
            target_link_libraries(zentrix_${name} INTERFACE ${ZENTRIX_${file}_LIBRARY})
        endforeach()
    endif()
endfunction()

zentrix_library(fftw fftw3.h fftw3f_threads fftw3f)
zentrix_library(tiff tiffio.h tiff)
zentrix_library(nlopt nlopt.h nlopt)
if(WIN32)
    target_link_libraries(zentrix_tiff INTERFACE z)
endif()
