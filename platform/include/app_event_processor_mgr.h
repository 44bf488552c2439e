#pragma once

#include "base_type.h"

namespace OHOS::HiviewDFX::HiAppEvent {

class AppEventProcessorMgr {
public:
    /// Registers a processor. Returns its ID, 0 or above; negative if it was refused. May take its time. Callable from
    /// any thread.
    static int64_t AddProcessor(const ReportConfig& config);
};

}  // namespace OHOS::HiviewDFX::HiAppEvent
