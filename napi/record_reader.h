#pragma once

#include <cstdint>
#include <string>

#include "common/js_value_helpers.h"
#include "napi/native_api.h"

namespace TAVIK::GAME_PLAYER {

/// Reads the fields of a record from a JS object: what is missing or of the wrong type stays as it was, or
/// empty. On `env`'s JS thread.
class FieldReader {
public:
    FieldReader(napi_env env, napi_value object) : env_(env), object_(object) {}

    void operator()(const char* name, std::string& field) const {
        JsObjectToString(env_, object_, name, MAX_STRING_LENGTH, field);
    }
    void operator()(const char* name, int32_t& field) const { JsObjectToInt(env_, object_, name, field); }
    void operator()(const char* name, bool& field) const { JsObjectToBool(env_, object_, name, field); }

    /// A field that tells whether it was given: also if that was with the wrong type.
    template <typename Field>
    void operator()(const char* name, Field& field, bool& isSet) const {
        if (HasProperty(env_, object_, name)) {
            (*this)(name, field);
            isSet = true;
        }
    }

private:
    napi_env env_;
    napi_value object_;
};

/// False if `value` is no object: arrays and dates are, functions and `null` are not. On `env`'s JS thread.
template <typename Record>
bool ReadRecord(napi_env env, napi_value value, Record& record) {
    if (TypeOf(env, value) != napi_object) return false;
    record.VisitFields(FieldReader(env, value));
    return true;
}

}  // namespace TAVIK::GAME_PLAYER
