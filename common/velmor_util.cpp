#include "common/velmor_util.h"

#include <openssl/bio.h>
#include <openssl/buffer.h>
#include <openssl/evp.h>

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

struct OpenSslDeleter {
    void operator()(BIO* chain) const { BIO_free_all(chain); }
    void operator()(BUF_MEM* buffer) const { BUF_MEM_free(buffer); }
};
using BioChain = std::unique_ptr<BIO, OpenSslDeleter>;

// Has its final size from the start, so that a large output is not copied while it grows: if it is asked to
// hold `size` bytes, the buffer allocates a third more, which is enough for their base64.
BioChain MakeMemoryBio(size_t size) {
    BioChain bio(BIO_new(BIO_s_mem()));
    std::unique_ptr<BUF_MEM, OpenSslDeleter> buffer(BUF_MEM_new());
    if (bio == nullptr || buffer == nullptr || BUF_MEM_grow(buffer.get(), size) != size) return nullptr;
    buffer->length = 0;
    if (BIO_set_mem_buf(bio.get(), buffer.get(), BIO_CLOSE) != 1) return nullptr;
    (void)buffer.release();
    return bio;
}

std::string FailToEncode(const char* why) {
    GAME_LOGE("Base64Encode error: %{public}s", why);
    return {};
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

int64_t GetCurrentTimestamp() {
    return OHOS::MiscServices::TimeServiceClient::GetInstance()->GetBootTimeMs();
}

std::string Base64Encode(const uint8_t* data, size_t length) {
    if (data == nullptr || length == 0) return FailToEncode("invalid input param.");
    BioChain memBio = MakeMemoryBio(length);
    if (memBio == nullptr) return FailToEncode("memBio is nullptr.");
    BioChain b64Bio(BIO_new(BIO_f_base64()));
    if (b64Bio == nullptr) return FailToEncode("b64Bio is nullptr.");
    BioChain chain(BIO_push(b64Bio.release(), memBio.release()));
    BIO_set_flags(chain.get(), BIO_FLAGS_BASE64_NO_NL);
    if (BIO_write(chain.get(), data, static_cast<int>(length)) < 1) return FailToEncode("bio write fail.");
    (void)BIO_flush(chain.get());
    BUF_MEM* buffer = nullptr;
    (void)BIO_get_mem_ptr(chain.get(), &buffer);
    if (buffer == nullptr) return FailToEncode("bio get mem ptr fail.");
    return std::string(buffer->data, buffer->length);
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
