# The options of every target.
add_library(zentrix_options INTERFACE)
target_include_directories(zentrix_options INTERFACE ${PROJECT_SOURCE_DIR})
target_link_libraries(zentrix_options INTERFACE zentrix_headers)
target_compile_options(zentrix_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror
    -ffp-contract=off)  # a fused multiply-add would round once where the rules round twice
if(WIN32)
    target_compile_definitions(zentrix_options INTERFACE
        UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601)
endif()
if(ZENTRIX_SANITIZE)
    target_compile_options(zentrix_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)  # false positives in GCC 12's instrumented std::variant
    target_link_options(zentrix_options INTERFACE -fsanitize=address,undefined)
endif()
if(ZENTRIX_SANITIZE_THREADS)
    target_compile_options(zentrix_options INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(zentrix_options INTERFACE -fsanitize=thread)
endif()
if(ZENTRIX_LIBFUZZER)
    target_compile_options(zentrix_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
    target_compile_options(zentrix_options INTERFACE -Wno-error)  # its warnings are clang-tidy's task
endif()

# Kernels: loops over pixels. Neither flag changes a result; both allow comparisons and clamps to be vectorised.
add_library(zentrix_kernel_options INTERFACE)
target_link_libraries(zentrix_kernel_options INTERFACE zentrix_options)
target_compile_options(zentrix_kernel_options INTERFACE -fno-math-errno -fno-trapping-math
    $<$<CONFIG:Release>:-O3>)

# Compiles six sources of a target at a time: headers that they share are read once, which halves the time of a whole
# build. Within a folder, names in unnamed namespaces must differ. Sources with a system's own header are left out. With
# -DZENTRIX_GROUPS=OFF each source is compiled by itself, as clang-tidy does.
function(zentrix_compile_in_groups target)
    get_target_property(with_system_header ${target} SOURCES)
    list(FILTER with_system_header INCLUDE REGEX "_(windows|posix)\\.cpp$")
    set_source_files_properties(${with_system_header} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ${ZENTRIX_GROUPS} UNITY_BUILD_BATCH_SIZE 6)
endfunction()
