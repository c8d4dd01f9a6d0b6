// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Cancellation.h>
#include <Roamly/Document/ProjectLock.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>

namespace Document {

namespace {

using namespace std::chrono_literals;

constexpr auto retryInterval = 20ms;

/// Saving puts a new file in the old one's place; a lock on the old one is worth nothing then.
bool isStillAt(int descriptor, const std::filesystem::path& path) {
    struct stat held {};
    struct stat present {};
    return ::fstat(descriptor, &held) == 0 && ::stat(path.c_str(), &present) == 0 &&
           held.st_dev == present.st_dev && held.st_ino == present.st_ino;
}

} // namespace

ProjectLock::ProjectLock(const std::filesystem::path& project, const LockWait& wait) {
    bool hasTold = false;
    while (true) {
        m_descriptor = ::open(project.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
        if (m_descriptor < 0)
            return;
        while (::flock(m_descriptor, LOCK_EX | LOCK_NB) != 0) {
            if (errno != EWOULDBLOCK && errno != EINTR)
                return;
            if (wait.stop.stop_requested()) {
                ::close(m_descriptor);
                throw Foundation::Cancelled{};
            }
            if (!hasTold && wait.waiting)
                wait.waiting();
            hasTold = true;
            std::this_thread::sleep_for(retryInterval);
        }
        if (isStillAt(m_descriptor, project))
            return;
        ::close(m_descriptor);
    }
}

ProjectLock::~ProjectLock() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

} // namespace Document
