// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>

namespace Jobs {

/// Carries a function over to the owner's thread, where it runs later, in the order of the calls. May be
/// called from any thread, the owner's own included, and must do so until the job is gone.
using Executor = std::function<void(std::function<void()>)>;

/// One piece of long work at a time on a thread of its own, for an owner that never waits: a window's thread,
/// or a command's. Import, analysis, captions and export are all run by one of these.
///
/// The work gets a copy of what it needs, reports through its `Run`, and returns its landing: what is left to
/// do on the owner's thread, with the results, when it is over. What a run posts reaches nobody once the
/// owner has dropped it, has begun a newer one or is gone.
///
/// Owner's thread only, but for `Run`.
class Job {
    struct Token;

public:
    /// What becomes of a run that was asked to stop.
    enum class WhenStopped {
        /// The owner is idle at once, and nothing that the run still posts reaches it.
        Drop,
        /// The run ends as others do, with what it has.
        RunOut,
    };

    /// A run as its work sees it. Worker's thread.
    class Run {
    public:
        [[nodiscard]] const std::stop_token& stop() const { return m_stop; }
        /// Has the owner's thread carry out a report, unless the run does not count any more then.
        void post(std::function<void()> report) const;

    private:
        friend class Job;
        Run(std::stop_token stop, std::shared_ptr<Token> token, const Executor& executor)
            : m_stop(std::move(stop))
            , m_token(std::move(token))
            , m_executor(&executor) {}

        std::stop_token m_stop;
        std::shared_ptr<Token> m_token;
        const Executor* m_executor;
    };

    /// What is done with the results, on the owner's thread; may be empty.
    using Landing = std::function<void()>;
    /// Whatever it throws ends the run and nothing else; Foundation::Cancelled is no failure.
    using Work = std::function<Landing(const Run&)>;

    struct Ending {
        bool wasStopped = false;
        /// Why the work could not be done: one sentence. Never set when it was stopped.
        std::optional<std::string> failure;
    };
    /// Called once for each run, on the owner's thread, after its landing; the job is idle then.
    using Ended = std::function<void(const Ending&)>;

    Job(Executor executor, WhenStopped whenStopped);
    /// Asks a running work to stop and waits for its end; nobody hears of it any more.
    ~Job();
    Job(const Job&) = delete;
    Job& operator=(const Job&) = delete;

    [[nodiscard]] bool isRunning() const { return m_token != nullptr; }

    /// Begins the work and returns at once; false, and nothing happens, while one runs. Work that was dropped
    /// and has not ended yet is waited for on the new work's thread.
    bool start(Work work, Ended ended);

    /// Asks the running work to stop; false when none runs or it was asked before. With `Drop` the ending
    /// comes before this returns.
    bool stop();

private:
    void end(const std::shared_ptr<Token>& token, const Landing& landing, Ending ending);

    Executor m_executor;
    WhenStopped m_whenStopped;
    /// Of the run that counts; absent when idle.
    std::shared_ptr<Token> m_token;
    std::jthread m_worker;
};

/// An exception as one sentence for the user.
[[nodiscard]] std::string sentenceOf(const std::exception_ptr& failure);

} // namespace Jobs
