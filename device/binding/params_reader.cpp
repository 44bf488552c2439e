#include <cmath>
#include <limits>
#include <utility>

#include "internals.h"
#include "reading.h"

namespace StandIn {
namespace {

using OHOS::AAFwk::WantParams;

constexpr int MAX_DEPTH = 32;
constexpr const char* POSSIBLE_TYPES = "a number, boolean, string, array of strings or plain object";

/// Reads JS objects into parameters. Methods that return false leave a JS exception pending.
class ParamsReader {
public:
    explicit ParamsReader(napi_env env) : env_(env) {}

    bool ReadObject(napi_value object, const std::string& name, WantParams& params) {
        return ForEachProperty(env_, object, name, [&](const std::string& key, napi_value value) {
            Internals::Param param;
            if (!ReadParam(value, name + "." + key, param)) return false;
            Internals::SetParam(params, key, std::move(param));
            return true;
        });
    }

private:
    bool ReadParam(napi_value value, const std::string& name, Internals::Param& param) {
        napi_valuetype type = napi_undefined;
        (void)napi_typeof(env_, value, &type);
        switch (type) {
            case napi_number:
                return ReadNumber(value, param);
            case napi_boolean:
                return napi_get_value_bool(env_, value, &param.emplace<bool>()) == napi_ok;
            case napi_string:
                return ReadText(env_, value, name, param.emplace<std::string>());
            case napi_object:
                return ReadArrayOrObject(value, name, param);
            default:
                return ThrowUnexpected(env_, name, POSSIBLE_TYPES, value);
        }
    }

    bool ReadNumber(napi_value value, Internals::Param& param) {
        using Int = std::numeric_limits<int32_t>;
        double number = 0;
        (void)napi_get_value_double(env_, value, &number);
        const bool isInt = number >= Int::min() && number <= Int::max() && std::trunc(number) == number;
        if (isInt && !(number == 0 && std::signbit(number))) {
            param = static_cast<int32_t>(number);
        } else {
            param = number;
        }
        return true;
    }

    bool ReadArrayOrObject(napi_value value, const std::string& name, Internals::Param& param) {
        bool isArray = false;
        (void)napi_is_array(env_, value, &isArray);
        if (isArray) return ReadTexts(value, name, param.emplace<std::vector<std::string>>());
        if (!IsPlainObject(env_, value)) return ThrowUnexpected(env_, name, POSSIBLE_TYPES, value);
        return ReadNested(value, name, param);
    }

    bool ReadTexts(napi_value array, const std::string& name, std::vector<std::string>& texts) {
        return ForEachElement(env_, array, name, [&](const std::string& elementName, napi_value element) {
            return ReadText(env_, element, elementName, texts.emplace_back());
        });
    }

    bool ReadNested(napi_value object, const std::string& name, Internals::Param& param) {
        if (depth_ == MAX_DEPTH) {
            return ThrowTypeError(env_, name + " is nested more than " + std::to_string(MAX_DEPTH) +
                                            " objects deep: an object must not contain itself");
        }
        ++depth_;
        const bool isRead = ReadObject(object, name, param.emplace<WantParams>());
        --depth_;
        return isRead;
    }

    napi_env env_;
    int depth_ = 0;
};

}  // namespace

bool ReadParams(napi_env env, napi_value value, WantParams& params) {
    return ParamsReader(env).ReadObject(value, "parameters", params);
}

}  // namespace StandIn
