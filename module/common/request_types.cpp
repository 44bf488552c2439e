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
#define REQUEST(type, number, Method, name, flags) {type, name, flags},
#define RESERVED(type, number, name) {type, name, 0},
#include "common/requests.def"
};

constexpr ApiRow UNDEFINED = {0, "undefined", 0};

const ApiRow& FindRow(int32_t requestType) {
    for (const ApiRow& row : apiNameMap) {
        if (row.requestType == requestType) return row;
    }
    return UNDEFINED;
}

}  // namespace

bool HasFlag(int32_t requestType, RequestFlag flag) { return (FindRow(requestType).flags & flag) != 0; }

const char* FindApiName(int32_t requestType) { return FindRow(requestType).name; }

}  // namespace TAVIK::GAME_PLAYER
