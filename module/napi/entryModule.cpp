#include "napi/game_player_extension_ability.h"

namespace {

napi_value Entry(napi_env env, napi_value exports) {
    (void)TAVIK::GAME_PLAYER::GamePlayerExtensionAbilityManager::Entry(env, exports);
    return exports;
}

napi_module napiModule = {
    1,                                         // nm_version
    0,                                         // nm_flags
    nullptr,                                   // nm_filename
    Entry,                                     // nm_register_func
    "core.velmor.gamePlayerExtensionAbility",  // nm_modname
    nullptr,                                   // nm_priv
    {nullptr},                                 // reserved
};

}  // namespace

/// Runs when the library is loaded.
extern "C" __attribute__((constructor)) void RegisterEntryModule() { napi_module_register(&napiModule); }
