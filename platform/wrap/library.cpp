#include <openssl/bio.h>
#include <openssl/evp.h>

#include <cstddef>
#include <new>

#include "faults.h"

// The linker redirects the module's calls of OpenSSL and the C++ runtime here, so that they can fail.

using StandIn::Call;
using StandIn::Faults;

extern "C" {

long __wrap_BIO_ctrl(BIO* bio, int command, long number, void* pointer) {
    return Faults::Trip(Call::BIO_ctrl) ? 0 : BIO_ctrl(bio, command, number, pointer);
}

BIO* __wrap_BIO_new(const BIO_METHOD* method) { return Faults::Trip(Call::BIO_new) ? nullptr : BIO_new(method); }

int __wrap_BIO_write(BIO* bio, const void* data, int length) {
    return Faults::Trip(Call::BIO_write) ? -1 : BIO_write(bio, data, length);
}

// These cannot fail. With them here, only this library has to be linked with OpenSSL.
const BIO_METHOD* __wrap_BIO_f_base64(void) { return BIO_f_base64(); }
const BIO_METHOD* __wrap_BIO_s_mem(void) { return BIO_s_mem(); }
BIO* __wrap_BIO_push(BIO* bio, BIO* next) { return BIO_push(bio, next); }
void __wrap_BIO_set_flags(BIO* bio, int flags) { BIO_set_flags(bio, flags); }
void __wrap_BIO_free_all(BIO* chain) { BIO_free_all(chain); }

// operator new(std::size_t, const std::nothrow_t&)
void* __wrap__ZnwmRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag) noexcept {
    return Faults::Trip(Call::NEW_NOTHROW) ? nullptr : operator new(size, tag);
}

}  // extern "C"
