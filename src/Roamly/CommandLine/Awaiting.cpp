#include <Roamly/CommandLine/Awaiting.h>

namespace CommandLine {

std::exception_ptr await(Jobs::ActionQueue& queue, const std::stop_token& stop,
                         const std::function<bool()>& isDone, const std::function<void()>& cancel) {
    const std::stop_callback interrupted{stop, [&] { queue.post(cancel); }};
    std::exception_ptr failure;
    while (!isDone()) {
        try {
            queue.runUntil(isDone);
        } catch (...) {
            if (!failure) {
                failure = std::current_exception();
                queue.post(cancel);
            }
        }
    }
    return failure;
}

} // namespace CommandLine
