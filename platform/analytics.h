#pragma once

#include "app_event.h"
#include "app_event_processor_mgr.h"
#include "latest.h"

namespace StandIn {

using EventStore = Latest<OHOS::HiviewDFX::HiAppEvent::Event, 65536>;
/// The processors that would report the events; a processor's index is its ID. Never forgotten.
using ProcessorStore = Latest<OHOS::HiviewDFX::HiAppEvent::ReportConfig, 1024>;
template <>
EventStore& EventStore::Get();
template <>
ProcessorStore& ProcessorStore::Get();

}  // namespace StandIn
