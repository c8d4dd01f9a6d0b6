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

/// One pass over a music file, for those who play it: what the reader gives, without its libraries.
class MusicPass {
public:
    /// Throws ExportError (appendFailed) when the file cannot be opened as sound. After `stop` is requested
    /// the file seems to end early.
    MusicPass(const std::filesystem::path& file, const std::stop_token& stop);
    ~MusicPass();
    MusicPass(const MusicPass&) = delete;
    MusicPass& operator=(const MusicPass&) = delete;

    /// Appends the next piece, which may be empty. False when the file has ended.
    [[nodiscard]] bool read(std::vector<StereoSample>& samples);

private:
    std::unique_ptr<MusicReader> m_reader;
};

} // namespace Export
