# A C++ library for a target that has a C library only: LLVM's, from the sources that come with Emscripten. Without
# exceptions and threads, which neither the module nor result_hash has.
set(LIBCXX "/usr/share/emscripten/system/lib" CACHE PATH "The folder with libcxx and libcxxabi")

add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions>)
add_compile_definitions(_LIBCPP_HAS_MUSL_LIBC _LIBCPP_HAS_NO_THREADS _LIBCXXABI_HAS_NO_THREADS)
include_directories(BEFORE SYSTEM "${LIBCXX}/libcxx/include" "${LIBCXX}/libcxxabi/include")

set(abi_names abort_message cxa_aux_runtime cxa_default_handlers cxa_guard cxa_handlers cxa_noexception
    cxa_virtual fallback_malloc private_typeinfo stdlib_exception stdlib_new_delete stdlib_stdexcept
    stdlib_typeinfo)
set(library_names algorithm charconv chrono exception functional hash ios ios.instantiations locale memory mutex new
    stdexcept string system_error typeinfo utility vector filesystem/directory_iterator filesystem/operations)
list(TRANSFORM abi_names REPLACE "(.+)" "${LIBCXX}/libcxxabi/src/\\1.cpp" OUTPUT_VARIABLE abi_sources)
list(TRANSFORM library_names REPLACE "(.+)" "${LIBCXX}/libcxx/src/\\1.cpp" OUTPUT_VARIABLE library_sources)

add_library(cxxabi STATIC ${abi_sources})
set_target_properties(cxxabi PROPERTIES CXX_STANDARD 14) # it names what later standards removed
target_compile_definitions(cxxabi PRIVATE _LIBCXXABI_BUILDING_LIBRARY _LIBCXXABI_NO_EXCEPTIONS
    LIBCXXABI_NON_DEMANGLING_TERMINATE)
target_include_directories(cxxabi PRIVATE "${LIBCXX}/libcxxabi/src" "${LIBCXX}/libcxx/src" "${LIBCXX}/libcxx")

add_library(cxx STATIC ${library_sources})
set_target_properties(cxx PROPERTIES CXX_STANDARD 20)
target_compile_definitions(cxx PRIVATE _LIBCPP_BUILDING_LIBRARY LIBCXX_BUILDING_LIBCXXABI=1
    _LIBCPP_DISABLE_VISIBILITY_ANNOTATIONS)
target_include_directories(cxx PRIVATE "${LIBCXX}/libcxx/src")
target_link_libraries(cxx PUBLIC cxxabi)
foreach(library cxx cxxabi)
    target_compile_options(${library} PRIVATE -w)
endforeach()
