#pragma once

#include <node_api.h>

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace StandIn {

/// Why the module runs on a thread without being called by the game.
struct Occasion {
    bool isTimer = false;  // else an extension's answer
    int32_t requestType = 0;
    int32_t code = 0;              // of the answer
    int32_t modal = 0;             // the ID of the modal that answers
    std::function<void()> giveUp;  // called on that thread if the answer ends the game: it never returns
};

/// A call of the game that the module's code serves on a thread: while the method runs, while an extension answers the
/// modal that the call opened, and on the threads that are started meanwhile. A delivery serves no call, but has one of
/// these for itself.
struct ServedCall {
    uint64_t number = 0;                 // no other call of the process has it
    const char* method = "";             // its name in JS
    std::optional<int32_t> requestType;  // if it is not that of the method
    Occasion occasion;

    napi_callback_info info = nullptr;  // while the method runs; this and the next
    void* data = nullptr;               // of the method's property

    std::array<napi_value, 4> arguments{};  // those that the method has read
    const char* property = "";              // the one that it has read last, its value,
    napi_value propertyValue = nullptr;
    napi_value element = nullptr;  // and the element of that value that it has read last
    uint32_t index = 0;
    std::vector<std::pair<napi_value, napi_ref>> functions;  // of the game that it has read, by their reference
    std::string invalidString;                               // the one read last that is no valid UTF-8 on a device

    bool isRecorded = false;       // somebody watches
    bool hasThrown = false;        // and knows what the method has thrown
    bool isWindowMissing = false;  // the window that the module has looked for
    bool hasEffect = false;        // the module has done something observable
};

/// Makes `call` the one that this thread serves, for the lifetime of the scope.
class ServedCallScope {
public:
    explicit ServedCallScope(ServedCall call);
    ServedCallScope(const ServedCallScope&) = delete;
    ServedCallScope& operator=(const ServedCallScope&) = delete;
    ~ServedCallScope();

    const ServedCall& Get() const { return call_; }

private:
    ServedCall call_;
    ServedCall* const outer_;
};

/// The call that this thread serves; null if there is none.
ServedCall* Served();

/// What a thread serves that the module starts from this one.
ServedCall ServedByNewThread();

/// Call when the module does something observable on this thread.
void MarkEffect();

/// Sets whether the module reads strings as the device gives them, the default, or as Node does. Any thread.
void SetPlatformStrings(bool isLikePlatform);

// Where the strings come from that the served call reads, so that a warning can name them. On its JS thread.

/// `value` is a property of an object.
void KeepProperty(napi_value value, const char* name);
/// `value` is an element of the array that was kept last.
void KeepElement(napi_value value, uint32_t index);

/// Replaces the methods among `properties` by functions that call them within a `ServedCallScope`.
void ServeMethods(std::vector<napi_property_descriptor>& properties);

}  // namespace StandIn
