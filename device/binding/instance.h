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
#include "watching.h"

namespace StandIn {

/// The binding's state in one JS environment that loaded it. Use it only on that environment's JS thread.
class Instance {
public:
    /// Makes the instance of `env`, which lives as long as `env`. False if a Node-API call fails.
    static bool Create(napi_env env);
    static Instance& Of(napi_env env);

    ~Instance();

    const std::shared_ptr<Environment>& GetEnvironment() const { return environment_; }

    /// From now on the JS function `handler` is called with the record of every modal opened, also after a
    /// reset. Returns the generation and the ID of the next modal.
    std::pair<int32_t, int32_t> SetModalHandler(napi_value handler);
    void RemoveModalHandler();

    /// From now on the JS function `handler` is called when the game ends. Its arguments are whether a timer
    /// ended the game, the request type, and the code of the answer.
    void SetExitHandler(napi_value handler);
    void RemoveExitHandler();

    /// From now on the JS function `handler` is called with a record of everything that happens.
    void SetRecordHandler(napi_value handler);
    void RemoveRecordHandler();

private:
    explicit Instance(napi_env env) : env_(env), environment_(Environment::Attach(env)) {}
    void CallModalHandler(const Modal& modal) const;
    void CallExitHandler(const Occasion& why) const;
    void CallRecordHandler(const Happening& happening, uint64_t number) const;
    void Call(const Reference& function, std::initializer_list<napi_value> arguments) const;

    napi_env const env_;
    const std::shared_ptr<Environment> environment_;
    Reference modalHandler_;
    Reference exitHandler_;
    Reference recordHandler_;
    uint64_t recordHandlers_ = 0;  // how many were set so far
};

/// A record for JS: { kind, time } and the fields of its kind. Null if a Node-API call fails.
napi_value MakeRecord(napi_env env, const Happening& happening);

/// The record of a modal for JS: { id, generation, want, config }. Null if a Node-API call fails.
napi_value MakeModalRecord(napi_env env, const Modal& modal);

}  // namespace StandIn
