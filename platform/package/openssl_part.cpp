// The package's libraries link only the base64 of OpenSSL's libcrypto. Without these replacements, its initialisation
// would bring in all algorithms: thirty times as much code. The linker redirects the calls here.

#include <cstdint>

extern "C" {

/// There is nothing to initialise: no algorithm, no configuration file.
int __wrap_OPENSSL_init_crypto(uint64_t /*options*/, const void* /*settings*/) { return 1; }

/// A thread's last error is not freed when the thread ends. Nobody reads it.
int __wrap_ossl_init_thread_start(const void* /*index*/, void* /*argument*/, void (* /*handler*/)(void*)) { return 1; }

// Nobody attaches data to a BIO.
void* __wrap_ossl_lib_ctx_get_ex_data_global(void* /*context*/) { return nullptr; }
int __wrap_CRYPTO_new_ex_data(int /*kind*/, void* /*object*/, void* /*data*/) { return 1; }
void __wrap_CRYPTO_free_ex_data(int /*kind*/, void* /*object*/, void* /*data*/) {}

}  // extern "C"
