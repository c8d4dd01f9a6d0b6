// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/StandardErrorFilter.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <mutex>
#include <string>
#include <string_view>

namespace PhotoSources {

namespace {

/// How their lines begin.
constexpr std::array<std::string_view, 2> noise{"./lib/jxl/", "SPS error: "};

std::mutex mutex;
int users = 0;
int original = -1;
int collected = -1;

void close(int& descriptor) {
    if (descriptor >= 0)
        ::close(descriptor);
    descriptor = -1;
}

void writeAll(std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(STDERR_FILENO, text.data(), text.size());
        if (count <= 0)
            return;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

void passOn(std::string_view text) {
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end == std::string_view::npos ? end : end + 1);
        const bool isNoise = std::ranges::any_of(
            noise, [line](std::string_view beginning) { return line.starts_with(beginning); });
        // libjxl ends some of its lines twice.
        if (!isNoise && line != "\n")
            writeAll(line);
        text.remove_prefix(line.size());
    }
}

} // namespace

StandardErrorFilter::StandardErrorFilter() {
    const std::lock_guard lock(mutex);
    if (users++ > 0)
        return;
    std::fflush(stderr);
    original = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
    collected = ::memfd_create("standard-error", MFD_CLOEXEC);
    if (original < 0 || collected < 0 || ::dup2(collected, STDERR_FILENO) < 0) {
        close(original);
        close(collected);
    }
}

StandardErrorFilter::~StandardErrorFilter() {
    const std::lock_guard lock(mutex);
    if (--users > 0 || original < 0)
        return;
    std::fflush(stderr);
    ::dup2(original, STDERR_FILENO);
    close(original);
    std::string text;
    char buffer[4096];
    for (off_t at = 0;;) {
        const ssize_t count = ::pread(collected, buffer, sizeof buffer, at);
        if (count <= 0)
            break;
        text.append(buffer, static_cast<std::size_t>(count));
        at += count;
    }
    close(collected);
    passOn(text);
}

} // namespace PhotoSources
