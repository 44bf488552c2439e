#include "ui_thread.h"

#include <utility>

namespace StandIn {

UiThread& UiThread::Get()
{
    static UiThread& thread = *new UiThread();
    return thread;
}

void UiThread::Post(Answer answer)
{
    thread_.Post([this, answer = std::move(answer)] { RunHere(answer); });
}

void UiThread::RunHere(const Answer& answer)
{
    std::lock_guard<std::recursive_mutex> guard(answering_);
    answer();
}

}  // namespace StandIn
