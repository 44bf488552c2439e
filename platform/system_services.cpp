#include <atomic>

#include "clock.h"
#include "device_context.h"
#include "ipc_skeleton.h"
#include "time_service_client.h"
#include "tokenid_kit.h"

// The small services that the module asks: the time, who the caller is and what it may do.

namespace StandIn {
namespace {

constexpr uint64_t APPLICATION_TOKEN = 0x20010001;
constexpr uint64_t SYSTEM_APP_MASK = uint64_t{1} << 32;

std::atomic<uint64_t> gCallingToken{APPLICATION_TOKEN};

}  // namespace

void SetSystemApp(bool isSystem) {
    gCallingToken = isSystem ? APPLICATION_TOKEN | SYSTEM_APP_MASK : APPLICATION_TOKEN;
}

}  // namespace StandIn

namespace OHOS {

uint64_t IPCSkeleton::GetCallingFullTokenID() { return StandIn::gCallingToken; }

namespace Security::AccessToken {

bool TokenIdKit::IsSystemAppByFullTokenID(uint64_t tokenId) {
    return (tokenId & StandIn::SYSTEM_APP_MASK) != 0;
}

}  // namespace Security::AccessToken

namespace MiscServices {

sptr<TimeServiceClient> TimeServiceClient::GetInstance() {
    static const sptr<TimeServiceClient>& client = *new sptr<TimeServiceClient>(new TimeServiceClient());
    return client;
}

int64_t TimeServiceClient::GetBootTimeMs() { return StandIn::Clock::Get().NowMs(); }

}  // namespace MiscServices

}  // namespace OHOS
