#include "common/velmor_util.h"

#include <openssl/bio.h>
#include <openssl/buffer.h>
#include <openssl/evp.h>

#include <algorithm>
#include <memory>
#include <mutex>

#include "common/velmor_log.h"
#include "ipc_skeleton.h"
#include "time_service_client.h"
#include "tokenid_kit.h"

namespace TAVIK::GAME_PLAYER {
namespace {

// The mutex guards `value`; nothing is called under it.
struct TraceId {
    std::mutex mutex;
    std::string value;
};

// Never destroyed: detached threads may use it while the process exits.
TraceId& gTraceId = *new TraceId();

struct BioDeleter {
    void operator()(BIO* chain) const { BIO_free_all(chain); }
};
using BioChain = std::unique_ptr<BIO, BioDeleter>;

// Of the bytes that are encoded at once: their output fits into the processor's cache.
constexpr size_t PIECE_LENGTH = 12288;

std::string FailToEncode(const char* why) {
    GAME_LOGE_AS("Base64Encode", "Base64Encode error: %{public}s", why);
    return {};
}

// Appends the base64 of `data` to `text`. Returns why it failed, or null. The chain ends in `memory`.
const char* EncodePieces(BIO* chain, BIO* memory, const uint8_t* data, size_t length, std::string& text) {
    for (size_t done = 0; done < length; done += PIECE_LENGTH) {
        const size_t piece = std::min(PIECE_LENGTH, length - done);
        if (done > 0 && BIO_reset(memory) != 1) return "bio write fail.";
        if (BIO_write(chain, data + done, static_cast<int>(piece)) < 1) return "bio write fail.";
        if (done + piece == length) (void)BIO_flush(chain);
        BUF_MEM* buffer = nullptr;
        (void)BIO_get_mem_ptr(memory, &buffer);
        if (buffer == nullptr) return "bio get mem ptr fail.";
        text.append(buffer->data, buffer->length);
    }
    return nullptr;
}

}  // namespace

void SetTraceId(const std::string& traceId) {
    {
        std::lock_guard<std::mutex> guard(gTraceId.mutex);
        gTraceId.value = traceId;
    }
    GAME_LOGI("SetTraceId traceId[%{public}s] success", traceId.c_str());
}

std::string GetTraceId() {
    std::lock_guard<std::mutex> guard(gTraceId.mutex);
    return gTraceId.value;
}

int64_t GetCurrentTimestamp() { return OHOS::MiscServices::TimeServiceClient::GetInstance()->GetBootTimeMs(); }

std::string Base64Encode(const uint8_t* data, size_t length) {
    if (data == nullptr || length == 0) return FailToEncode("invalid input param.");
    BioChain memBio(BIO_new(BIO_s_mem()));
    if (memBio == nullptr) return FailToEncode("memBio is nullptr.");
    BioChain b64Bio(BIO_new(BIO_f_base64()));
    if (b64Bio == nullptr) return FailToEncode("b64Bio is nullptr.");
    BIO* memory = memBio.get();
    BioChain chain(BIO_push(b64Bio.release(), memBio.release()));
    BIO_set_flags(chain.get(), BIO_FLAGS_BASE64_NO_NL);
    std::string text;
    text.reserve((length + 2) / 3 * 4);
    if (const char* why = EncodePieces(chain.get(), memory, data, length, text)) return FailToEncode(why);
    return text;
}

bool IsSystemAppCalling() {
    const uint64_t token = OHOS::IPCSkeleton::GetCallingFullTokenID();
    if (!OHOS::Security::AccessToken::TokenIdKit::IsSystemAppByFullTokenID(token)) {
        GAME_LOGE("Permission denied, non-system app called system api.");
        return false;
    }
    return true;
}

}  // namespace TAVIK::GAME_PLAYER
