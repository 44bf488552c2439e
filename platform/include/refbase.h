#pragma once

#include <memory>

namespace OHOS {

/// Base of objects that are held only by reference-counted pointers.
class RefBase {
public:
    virtual ~RefBase() = default;
};

/// A counted pointer to a `RefBase`, or null. The last one deletes the object. Counting is thread-safe.
template <typename T>
using sptr = std::shared_ptr<T>;  // NOLINT(readability-identifier-naming): the platform's own spelling

}  // namespace OHOS
