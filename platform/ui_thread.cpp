#include "ui_thread.h"

namespace StandIn {

UiThread& UiThread::Get() {
    static UiThread& thread = *new UiThread();
    return thread;
}

void UiThread::RunHere(const Task& answer) {
    std::lock_guard<std::recursive_mutex> guard(answering_);
    answer();
}

}  // namespace StandIn
