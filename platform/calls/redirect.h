#pragma once

// The compiler includes this before each source of the module, so that the module's calls go to the stand-in device:
// functions of C by macros, and what is in `std` by a namespace. The headers that declare the real functions come
// first, as the macros would rename those, too.

#include <node_api.h>
#include <openssl/bio.h>
#include <openssl/evp.h>
#include <unistd.h>
#include <uv.h>

#include <new>

#include "runtime.h"

#undef ERROR_SUCCESS  // the headers of Windows define it

/// What the module finds in `std`.
namespace StandIn::RedirectedStd {

using namespace ::std;

// NOLINTBEGIN(readability-identifier-naming): the names of std

using thread = Thread;
inline constexpr Nothrow nothrow{};

namespace this_thread {

using namespace ::std::this_thread;

template <typename Rep, typename Period>
void sleep_for(const ::std::chrono::duration<Rep, Period>& span) {
    SleepFor(span);
}

}  // namespace this_thread

// NOLINTEND(readability-identifier-naming)

}  // namespace StandIn::RedirectedStd

// The module's namespaces. Those of the platform's headers are within the second.
namespace TAVIK::GAME_PLAYER {
namespace std = StandIn::RedirectedStd;
}
namespace OHOS {
namespace std = StandIn::RedirectedStd;
}

#define napi_module_register StandIn::RegisterModule
#define _exit StandIn::Exit
#define JSON_THROW_USER(exception) StandIn::Abort()

#include <redirected_calls.h>  // generated from calls.def
