#include "reading.h"

#include <cmath>
#include <limits>

namespace StandIn {
namespace {

constexpr double MAX_SAFE_INTEGER = 9007199254740991;

bool ReadInteger(napi_env env, napi_value value, double least, double most, double& number) {
    return napi_get_value_double(env, value, &number) == napi_ok && number >= least && number <= most &&
           std::trunc(number) == number;
}

std::string ToText(double number) {
    char text[32];
    (void)snprintf(text, sizeof(text), "%.15g", number);
    return text;
}

}  // namespace

bool IsOfType(napi_env env, napi_value value, napi_valuetype type) {
    napi_valuetype actual = napi_undefined;
    return napi_typeof(env, value, &actual) == napi_ok && actual == type;
}

bool ReadFlag(napi_env env, napi_value value, const std::string& name, bool& flag) {
    return napi_get_value_bool(env, value, &flag) == napi_ok ||
           ThrowUnexpected(env, name, "true or false", value);
}

bool ReadInt32(napi_env env, napi_value value, const std::string& name, int32_t& number) {
    using Limits = std::numeric_limits<int32_t>;
    double wide = 0;
    if (!ReadInteger(env, value, Limits::min(), Limits::max(), wide)) {
        return ThrowUnexpected(env, name, "a 32-bit integer", value);
    }
    number = static_cast<int32_t>(wide);
    return true;
}

bool ReadCount(napi_env env, napi_value value, const std::string& name, uint64_t least, uint64_t& count) {
    double wide = 0;
    if (!ReadInteger(env, value, static_cast<double>(least), MAX_SAFE_INTEGER, wide)) {
        const std::string expected = "an integer of at least " + std::to_string(least);
        return ThrowUnexpected(env, name, expected.c_str(), value);
    }
    count = static_cast<uint64_t>(wide);
    return true;
}

bool ReadNumber(napi_env env, napi_value value, const std::string& name, double least, double most,
                double& number) {
    const std::string expected = "a number from " + ToText(least) + " to " + ToText(most);
    if (napi_get_value_double(env, value, &number) != napi_ok) {
        return ThrowUnexpected(env, name, expected.c_str(), value);
    }
    if (!(number >= least && number <= most)) {
        const std::string message = name + " must be " + expected + ", not " + Describe(env, value);
        (void)napi_throw_range_error(env, nullptr, message.c_str());
        return false;
    }
    return true;
}

}  // namespace StandIn
