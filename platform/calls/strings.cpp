#include <atomic>
#include <cstdio>
#include <string>
#include <string_view>

#include "calls/guarded.h"
#include "say.h"
#include "served_call.h"

// The module's reads of strings. Node replaces a lone surrogate; a device encodes it like any other character of its
// size, in three bytes that are no valid UTF-8. And where Node cuts a character that does not fit is up to Node; a
// device leaves it out, and what follows.

namespace StandIn {
namespace {

constexpr size_t PAIR_LENGTH = 4;                         // in bytes, the longest of a character
constexpr std::string_view REPLACEMENT = "\xEF\xBF\xBD";  // what Node writes for a lone surrogate

std::atomic<bool> gIsLikePlatform{true};

constexpr bool IsLead(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool IsTrail(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

/// The first `count` units of a string in UTF-16, or all.
std::u16string ReadUnits(napi_env env, napi_value value, size_t count) {
    std::u16string units(count + 1, u'\0');
    size_t length = 0;
    (void)napi_get_value_string_utf16(env, value, units.data(), units.size(), &length);
    units.resize(length);
    return units;
}

constexpr size_t LengthOf(char16_t unit) { return unit < 0x80 ? 1 : unit < 0x800 ? 2 : 3; }

/// Writes a lone surrogate like any other character of three bytes.
void Encode(char16_t surrogate, char* bytes) {
    bytes[0] = static_cast<char>(0xE0 | (surrogate >> 12));
    bytes[1] = static_cast<char>(0x80 | ((surrogate >> 6) & 0x3F));
    bytes[2] = static_cast<char>(0x80 | (surrogate & 0x3F));
}

/// Puts the lone surrogates of a string into its bytes, where Node has written a replacement of the same length. Cuts
/// off a last character that is not whole, by changing `count`. Returns the first lone surrogate, or 0.
char16_t Restore(const std::u16string& units, char* bytes, size_t& count) {
    char16_t first = 0;
    size_t at = 0;
    for (size_t i = 0; i < units.size(); ++i) {
        const char16_t unit = units[i];
        const bool isPair = IsLead(unit) && i + 1 < units.size() && IsTrail(units[i + 1]);
        const size_t length = isPair ? PAIR_LENGTH : LengthOf(unit);
        if (at + length > count) break;
        if (isPair) {
            ++i;
        } else if (IsLead(unit) || IsTrail(unit)) {
            Encode(unit, bytes + at);
            if (first == 0) first = unit;
        }
        at += length;
    }
    count = at;
    return first;
}

/// The property or argument that `value` is.
std::string NameOf(const ServedCall& call, napi_value value) {
    if (value == call.element) return std::string(call.property) + "[" + std::to_string(call.index) + "]";
    if (value == call.propertyValue) return call.property;
    for (size_t i = 0; i < call.arguments.size(); ++i) {
        if (value == call.arguments[i]) return "argument " + std::to_string(i + 1);
    }
    return "a string";
}

void Warn(napi_value value, const std::string& what) {
    const ServedCall* call = Served();
    if (call != nullptr) Say(std::string(call->method) + ": " + NameOf(*call, value) + " " + what);
}

void WarnOfSurrogate(napi_value value, char16_t surrogate) {
    char text[8];
    (void)std::snprintf(text, sizeof(text), "U+%04X", static_cast<unsigned>(surrogate));
    if (Served() != nullptr) Served()->invalidString = NameOf(*Served(), value);
    Warn(value, std::string("has the lone surrogate ") + text +
                    ". A device reads it as bytes that are no valid UTF-8, and ends the game if they are "
                    "sent as JSON. Pass the string's toWellFormed()");
}

void WarnOfCut(napi_env env, napi_value value, size_t read) {
    size_t all = 0;
    (void)napi_get_value_string_utf8(env, value, nullptr, 0, &all);
    if (all > read) {
        Warn(value, "is cut off: only " + std::to_string(read) + " of its " + std::to_string(all) +
                        " bytes of UTF-8 are sent, on a device too");
    }
}

/// Whether Node's result may differ from the device's, or the string may be cut.
bool MayDiffer(std::string_view bytes, size_t room) {
    return bytes.size() + PAIR_LENGTH > room || bytes.find(REPLACEMENT) != std::string_view::npos;
}

napi_status ReadString(napi_env env, napi_value value, char* buffer, size_t size, size_t* length) {
    size_t count = 0;
    if (buffer == nullptr || size == 0 || !gIsLikePlatform) {
        return napi_get_value_string_utf8(env, value, buffer, size, length);
    }
    const napi_status status = napi_get_value_string_utf8(env, value, buffer, size, &count);
    if (status != napi_ok) return status;
    const size_t room = size - 1;
    if (MayDiffer({buffer, count}, room)) {
        const char16_t surrogate = Restore(ReadUnits(env, value, size), buffer, count);
        buffer[count] = '\0';
        if (surrogate != 0) WarnOfSurrogate(value, surrogate);
        WarnOfCut(env, value, count);
    }
    if (std::string_view(buffer, count).find('\0') != std::string_view::npos) {
        Warn(value, "ends at its first NUL character, on a device too: what follows is not sent");
    }
    if (length != nullptr) *length = count;
    return napi_ok;
}

}  // namespace

void SetPlatformStrings(bool isLikePlatform) { gIsLikePlatform = isLikePlatform; }

void KeepProperty(napi_value value, const char* name) {
    ServedCall* call = Served();
    if (call == nullptr) return;
    call->propertyValue = value;
    call->property = name;
    call->element = nullptr;
}

void KeepElement(napi_value value, uint32_t index) {
    ServedCall* call = Served();
    if (call == nullptr) return;
    call->element = value;
    call->index = index;
}

}  // namespace StandIn

extern "C" napi_status device_napi_get_value_string_utf8(napi_env env, napi_value value, char* buffer, size_t size,
                                                         size_t* length) {
    return StandIn::Guarded(StandIn::Call::napi_get_value_string_utf8, StandIn::ReadString, env, value, buffer, size,
                            length);
}
