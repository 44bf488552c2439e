#include "stay_loaded.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace StandIn {

#ifdef _WIN32
void StayLoaded(const void* code) {
    constexpr DWORD FLAGS = GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS;
    HMODULE library = nullptr;
    (void)GetModuleHandleExW(FLAGS, static_cast<LPCWSTR>(code), &library);
}
#else
void StayLoaded(const void* code) {
    Dl_info info{};
    if (dladdr(code, &info) != 0) (void)dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
}
#endif

}  // namespace StandIn
