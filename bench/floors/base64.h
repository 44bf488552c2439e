#pragma once

#include <openssl/bio.h>
#include <openssl/buffer.h>
#include <openssl/evp.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace Floors {

/// Encodes with the module's calls: pieces through the base64 filter into a memory BIO, which is emptied after each.
inline std::string EncodeBase64(const uint8_t* data, size_t length) {
    constexpr size_t PIECE_LENGTH = 12288;
    BIO* memory = BIO_new(BIO_s_mem());
    BIO* chain = BIO_push(BIO_new(BIO_f_base64()), memory);
    BIO_set_flags(chain, BIO_FLAGS_BASE64_NO_NL);
    std::string text;
    text.reserve((length + 2) / 3 * 4);
    for (size_t done = 0; done < length; done += PIECE_LENGTH) {
        const size_t piece = std::min(PIECE_LENGTH, length - done);
        if (done > 0) (void)BIO_reset(memory);
        (void)BIO_write(chain, data + done, static_cast<int>(piece));
        if (done + piece == length) (void)BIO_flush(chain);
        BUF_MEM* buffer = nullptr;
        (void)BIO_get_mem_ptr(memory, &buffer);
        text.append(buffer->data, buffer->length);
    }
    BIO_free_all(chain);
    return text;
}

}  // namespace Floors
