#include "environment.h"
#include "floors.h"

namespace {

constexpr napi_property_descriptor Method(const char* name, napi_callback method) {
    return {name, nullptr, method, nullptr, nullptr, nullptr, napi_default, nullptr};
}

}  // namespace

// Node looks this name up. The one environment that loads the addon is the main thread's, for as long as the
// process lives.
extern "C" NAPI_MODULE_EXPORT napi_value napi_register_module_v1(napi_env env, napi_value exports) {
    using namespace Floors;
    (void)StandIn::Environment::Attach(env);
    const napi_property_descriptor methods[] = {
        Method("init", Init),
        Method("bindPlayer", BindPlayer),
        Method("prePurchase", PrePurchase),
        Method("savePlayerRole", SavePlayerRole),
        Method("unionLogin", UnionLogin),
        Method("forget", Forget),
        Method("listen", Listen),
        Method("onEventCallback", OnEventCallback),
    };
    Must(napi_define_properties(env, exports, std::size(methods), methods));
    return exports;
}
