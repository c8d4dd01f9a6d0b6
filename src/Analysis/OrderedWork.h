// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace Analysis {

/// Computes `work(0)` … `work(count - 1)` on several threads, a little ahead, and hands the results to
/// `take(index, result)` in order, in the calling thread. Before each, `mayContinue()` is asked there; when
/// it says no, what is not taken yet is dropped. An exception of `work` comes out where its result would.
template <typename Work, typename MayContinue, typename Take>
void inOrder(std::size_t count, std::size_t workers, Work work, MayContinue mayContinue, Take take) {
    using Result = decltype(work(std::size_t{}));
    struct Slot {
        std::optional<Result> result;
        std::exception_ptr failure;
        bool isDone = false;
    };

    if (workers < 2 || count < 2) {
        for (std::size_t i = 0; i < count && mayContinue(); ++i)
            take(i, work(i));
        return;
    }

    // So many results may wait for their turn, each perhaps a large picture.
    const std::size_t ahead = workers * 2;
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Slot> slots(count);
    std::size_t next = 0;
    std::size_t taken = 0;
    bool isOver = false;

    const auto labour = [&] {
        for (;;) {
            std::size_t mine = 0;
            {
                std::unique_lock lock(mutex);
                changed.wait(lock, [&] { return isOver || next == count || next < taken + ahead; });
                if (isOver || next == count)
                    return;
                mine = next++;
            }
            Slot slot;
            try {
                slot.result.emplace(work(mine));
            } catch (...) {
                slot.failure = std::current_exception();
            }
            slot.isDone = true;
            const std::lock_guard lock(mutex);
            slots[mine] = std::move(slot);
            changed.notify_all();
        }
    };

    // Ends the workers before what they use goes, also when `take` throws.
    struct Crew {
        std::mutex& mutex;
        std::condition_variable& changed;
        bool& isOver;
        std::vector<std::jthread> threads;
        ~Crew() {
            {
                const std::lock_guard lock(mutex);
                isOver = true;
            }
            changed.notify_all();
        }
    } crew{mutex, changed, isOver, {}};
    for (std::size_t i = 0; i < std::min(workers, count); ++i)
        crew.threads.emplace_back(labour);

    for (std::size_t i = 0; i < count; ++i) {
        if (!mayContinue())
            return;
        Slot slot;
        {
            std::unique_lock lock(mutex);
            changed.wait(lock, [&] { return slots[i].isDone; });
            slot = std::exchange(slots[i], Slot{});
            taken = i + 1;
        }
        changed.notify_all();
        if (slot.failure)
            std::rethrow_exception(slot.failure);
        take(i, std::move(*slot.result));
    }
}

} // namespace Analysis
