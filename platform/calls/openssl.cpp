#include <openssl/bio.h>
#include <openssl/evp.h>

#include "faults.h"

// The module's calls of OpenSSL.

using StandIn::Call;
using StandIn::Faults;

extern "C" {

long device_BIO_ctrl(BIO* bio, int command, long number, void* pointer) {
    return Faults::Trip(Call::BIO_ctrl) ? 0 : BIO_ctrl(bio, command, number, pointer);
}

BIO* device_BIO_new(const BIO_METHOD* method) { return Faults::Trip(Call::BIO_new) ? nullptr : BIO_new(method); }

int device_BIO_write(BIO* bio, const void* data, int length) {
    return Faults::Trip(Call::BIO_write) ? -1 : BIO_write(bio, data, length);
}

// These cannot fail. They are here so that the module needs nothing of OpenSSL.
const BIO_METHOD* device_BIO_f_base64(void) { return BIO_f_base64(); }
const BIO_METHOD* device_BIO_s_mem(void) { return BIO_s_mem(); }
BIO* device_BIO_push(BIO* bio, BIO* next) { return BIO_push(bio, next); }
void device_BIO_set_flags(BIO* bio, int flags) { BIO_set_flags(bio, flags); }
void device_BIO_free_all(BIO* chain) { BIO_free_all(chain); }

}  // extern "C"
