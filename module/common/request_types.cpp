#include "common/request_types.h"

namespace TAVIK::GAME_PLAYER {
namespace {

struct ApiRow {
    int32_t requestType;
    const char* name;
    uint32_t flags;
};

constexpr uint32_t IS_LOGIN = STORES_RECEIVED | STAYS_OPEN | CLOSES_ON_RELEASE;

// A plain array: detached threads read it while the process exits.
constexpr ApiRow apiNameMap[] = {
    {REQUEST_UNKNOWN, "UNKNOWN API", 0},
    {REQUEST_INIT, "init", HIDES_FAILURES},
    {REQUEST_GET_LOCAL_PLAYER, "getLocalPlayer", IS_LOGIN | HAS_MESSAGE | IS_TIMED | ENDS_ON_SUCCESS},
    {REQUEST_SAVE_PLAYER_ROLE, "savePlayerRole", HIDES_FAILURES},
    {REQUEST_PRE_PURCHASE, "prePurchase", HAS_MESSAGE | STORES_RECEIVED | STORES_RESULT},
    {REQUEST_POST_PURCHASE, "postPurchase", 0},
    {REQUEST_LAUNCH_ANTI_ADDICTION, "launchAntiAddiction", 0},
    {REQUEST_BIND_PLAYER, "bindPlayer", 0},
    {REQUEST_UNBIND_PLAYER, "unbindPlayer", 0},
    {REQUEST_VERIFY_LOCAL_PLAYER, "verifyLocalPlayer", IS_LOGIN | IS_TIMED | ENDS_ON_SUCCESS},
    {REQUEST_UNION_LOGIN, "unionLogin", IS_LOGIN | HAS_MESSAGE},
    {REQUEST_ON, "on", 0},
    {REQUEST_OFF, "off", 0},
    {REQUEST_LAUNCH_WELCOME_BANNER, "launchWelcomeBanner", CLOSES_ON_RELEASE},
    {REQUEST_QUICK_GAME_LOGIN, "quickGameLogin", IS_LOGIN | HAS_MESSAGE | IS_TIMED},
    {REQUEST_LAUNCH_COMMON_PAGE, "launchCommonPage", CLOSES_ON_RELEASE},
};

const ApiRow* FindRow(int32_t requestType) {
    for (const ApiRow& row : apiNameMap) {
        if (row.requestType == requestType) return &row;
    }
    return nullptr;
}

}  // namespace

bool HasFlag(int32_t requestType, RequestFlag flag) {
    const ApiRow* row = FindRow(requestType);
    return row != nullptr && (row->flags & flag) != 0;
}

const char* FindApiName(int32_t requestType) {
    const ApiRow* row = FindRow(requestType);
    return row != nullptr ? row->name : "undefined";
}

}  // namespace TAVIK::GAME_PLAYER
