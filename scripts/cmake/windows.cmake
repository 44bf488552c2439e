# A toolchain for CMake: Debian's cross-compiler for 64-bit Windows, with threads of POSIX.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)

# The headers that are the same on every system are copied from this machine's, away from those of its C library.
set(headers ${CMAKE_BINARY_DIR}/include)
foreach(folder /usr/include /usr/include/x86_64-linux-gnu ${NODE_INCLUDE_DIR})
    foreach(name nlohmann openssl uv uv.h)
        if(EXISTS ${folder}/${name})
            file(COPY ${folder}/${name} DESTINATION ${headers} FOLLOW_SYMLINK_CHAIN)
        endif()
    endforeach()
endforeach()
set(CMAKE_CXX_FLAGS_INIT "-isystem \"${headers}\"")
set(UV_INCLUDE_DIR ${headers})
set(OPENSSL_INCLUDE_DIR ${headers})
