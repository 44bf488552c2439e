#pragma once

#include <atomic>
#include <cstdint>
#include <string>

namespace OHOS::Velmor {

/// Reports API calls to the application's analytics. A thread-safe singleton: see `DelayedSingleton`.
class HaUtils {
public:
    /// Writes an event that a call of `apiName` has ended. `beginTime` is in boot milliseconds; `errorCode` is 0 for
    /// success. The first event of the process registers the report processor.
    void WriteEndEvent(const std::string& apiName, int64_t beginTime, int32_t errorCode);

    /// Calls `WriteEndEvent` of the singleton. If it could not be allocated, the event is dropped.
    static void ReportEnd(const std::string& apiName, int64_t beginTime, int32_t errorCode);

private:
    void Init();

    std::atomic<bool> initialised{false};  // set by the thread that then writes `processorId`
    int64_t processorId = -1;
};

}  // namespace OHOS::Velmor
