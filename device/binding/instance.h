#pragma once

#include <node_api.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <utility>

#include "environment.h"
#include "game_end.h"
#include "modals.h"
#include "reference.h"

namespace StandIn {

/// What the binding keeps for one JS environment that loaded it. On that environment's JS thread only.
class Instance {
public:
    /// Makes the instance of `env`, which lives as long as `env`. False if the environment refuses.
    static bool Create(napi_env env);
    static Instance& Of(napi_env env);

    ~Instance();

    const std::shared_ptr<Environment>& GetEnvironment() const { return environment_; }

    /// From now on the JS function `handler` is called with the record of every modal opened, also after a
    /// reset. Returns the generation and the id of the next one.
    std::pair<int32_t, int32_t> SetModalHandler(napi_value handler);
    void RemoveModalHandler();

    /// From now on the JS function `handler` is called when the game ends: with whether a timer ended it, and
    /// with the request type and the code of the answer.
    void SetExitHandler(napi_value handler);
    void RemoveExitHandler();

private:
    explicit Instance(napi_env env) : env_(env), environment_(Environment::Attach(env)) {}
    void CallModalHandler(const Modal& modal) const;
    void CallExitHandler(const Occasion& why) const;
    void Call(const Reference& function, std::initializer_list<napi_value> arguments) const;

    napi_env const env_;
    const std::shared_ptr<Environment> environment_;
    Reference modalHandler_;
    Reference exitHandler_;
};

/// The record of a modal for JS: { id, generation, want, config }. Null if the environment refuses.
napi_value MakeModalRecord(napi_env env, const Modal& modal);

}  // namespace StandIn
