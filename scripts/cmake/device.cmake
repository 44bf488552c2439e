# A toolchain for CMake: clang for a device with 64-bit ARM, with clang's own C++ library. Nothing is linked that the
# device has: its libraries, the C++ library and the C library stay undefined symbols.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_CXX_COMPILER_TARGET aarch64-linux-gnu)
set(CMAKE_SYSROOT /usr/aarch64-linux-gnu)
set(CMAKE_CXX_FLAGS_INIT
    "-stdlib=libc++ -mno-outline-atomics -idirafter /usr/include -idirafter /usr/include/x86_64-linux-gnu")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-fuse-ld=lld -nostdlib")
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)  # no program can be linked
