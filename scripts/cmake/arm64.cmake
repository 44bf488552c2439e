# A toolchain for CMake: Debian's cross-compiler for 64-bit ARM. The headers of Node, libuv, OpenSSL and nlohmann JSON
# are those of this machine.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_STRIP aarch64-linux-gnu-strip)
set(CMAKE_CXX_FLAGS_INIT "-idirafter /usr/include -idirafter /usr/include/x86_64-linux-gnu")
