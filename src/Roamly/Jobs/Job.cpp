// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Cancellation.h>
#include <Roamly/Jobs/Job.h>

#include <exception>
#include <new>
#include <utility>

namespace Jobs {

/// Stands for one run in everything that is on its way to the owner's thread, and is touched there only.
struct Job::Token {
    /// Null when the run does not count any more.
    Job* job = nullptr;
    Ended ended;
};

void Job::Run::post(std::function<void()> report) const {
    (*m_executor)([token = m_token, report = std::move(report)] {
        if (token->job)
            report();
    });
}

std::string sentenceOf(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const std::bad_alloc&) {
        return "There is not enough memory.";
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "Something unexpected happened.";
    }
}

Job::Job(Executor executor, WhenStopped whenStopped)
    : m_executor(std::move(executor))
    , m_whenStopped(whenStopped) {}

Job::~Job() {
    if (m_token)
        m_token->job = nullptr;
    m_worker.request_stop();
}

bool Job::start(Work work, Ended ended) {
    if (isRunning())
        return false;
    m_token = std::make_shared<Token>(Token{this, std::move(ended)});
    m_worker = std::jthread{[this, token = m_token, work = std::move(work),
                             previous = std::move(m_worker)](const std::stop_token& stop) mutable {
        if (previous.joinable())
            previous.join();
        Landing landing;
        Ending ending;
        try {
            landing = work(Run{stop, token, m_executor});
        } catch (const Foundation::Cancelled&) {
            ending.wasStopped = true;
        } catch (...) {
            ending.failure = sentenceOf(std::current_exception());
        }
        ending.wasStopped = ending.wasStopped || stop.stop_requested();
        if (ending.wasStopped)
            ending.failure.reset();
        m_executor([token, landing = std::move(landing), ending = std::move(ending)] {
            if (token->job)
                token->job->end(token, landing, ending);
        });
    }};
    return true;
}

bool Job::stop() {
    if (!isRunning() || m_worker.get_stop_token().stop_requested())
        return false;
    m_worker.request_stop();
    if (m_whenStopped == WhenStopped::Drop)
        end(m_token, {}, {.wasStopped = true, .failure = {}});
    return true;
}

void Job::end(const std::shared_ptr<Token>& token, const Landing& landing, Ending ending) {
    // Kept alive: the listener may begin a new run, or end the owner.
    const std::shared_ptr<Token> ended = token;
    ended->job = nullptr;
    m_token.reset();
    try {
        if (landing)
            landing();
    } catch (...) {
        ending.failure = sentenceOf(std::current_exception());
    }
    if (ended->ended)
        ended->ended(ending);
}

} // namespace Jobs
