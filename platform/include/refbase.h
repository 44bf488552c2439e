#pragma once

#include <memory>

namespace OHOS {

/// Base of objects that are held by counted pointers alone.
class RefBase {
public:
    virtual ~RefBase() = default;
};

/// One counted hold on a `RefBase`, or none; the last one to go deletes the object. Counting is thread-safe.
template <typename T>
using sptr = std::shared_ptr<T>;  // NOLINT(readability-identifier-naming): the platform's own spelling

}  // namespace OHOS
