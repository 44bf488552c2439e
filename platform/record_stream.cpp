#include "record_stream.h"

#include "clock.h"
#include "forever.h"

namespace StandIn {

Receivers<DeviceRecord>& RecordStream::Get() { return Forever<Receivers<DeviceRecord>>(); }

// The time is read when no other record is on its way, so that it never goes back from one to the next.
void RecordStream::Publish(DeviceRecord record) {
    Get().Send([&record]() -> const DeviceRecord& {
        record.time = Clock::Get().NowMs();
        return record;
    });
}

}  // namespace StandIn
