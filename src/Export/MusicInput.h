// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Export/StereoBuffer.h>

#include <filesystem>
#include <memory>
#include <stop_token>
#include <vector>

namespace Export {

class MusicReader;

/// A music file as an export hears it, for those who play it: from its beginning to its end, once, as 44.1
/// kHz stereo. Owner's thread.
class MusicInput {
public:
    /// Throws ExportError (appendFailed) when the file cannot be opened as sound. After `stop` is requested
    /// the file seems to end early.
    explicit MusicInput(std::filesystem::path file, std::stop_token stop = {});
    ~MusicInput();
    MusicInput(MusicInput&&) noexcept;
    MusicInput& operator=(MusicInput&&) noexcept;

    /// Appends the next piece, which may be empty. False when the file has ended; damaged parts are skipped.
    [[nodiscard]] bool read(std::vector<StereoSample>& samples);

private:
    std::unique_ptr<MusicReader> m_reader;
};

} // namespace Export
