#pragma once

#include <openssl/bio.h>
#include <openssl/buffer.h>
#include <openssl/evp.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace Floors {

/// Encodes with the module's calls: the base64 filter on a memory BIO that has its final size from the start.
inline std::string EncodeBase64(const uint8_t* data, size_t length) {
    BIO* memory = BIO_new(BIO_s_mem());
    BUF_MEM* buffer = BUF_MEM_new();
    (void)BUF_MEM_grow(buffer, length);
    buffer->length = 0;
    (void)BIO_set_mem_buf(memory, buffer, BIO_CLOSE);
    BIO* chain = BIO_push(BIO_new(BIO_f_base64()), memory);
    BIO_set_flags(chain, BIO_FLAGS_BASE64_NO_NL);
    (void)BIO_write(chain, data, static_cast<int>(length));
    (void)BIO_flush(chain);
    (void)BIO_get_mem_ptr(chain, &buffer);
    std::string text(buffer->data, buffer->length);
    BIO_free_all(chain);
    return text;
}

}  // namespace Floors
