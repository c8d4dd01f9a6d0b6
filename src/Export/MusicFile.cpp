// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/ExportError.h>
#include <Export/MusicFile.h>
#include <Export/MusicReader.h>

#include <string>
#include <vector>

namespace Export {

void checkMusic(const std::filesystem::path& file, const std::stop_token& stop) {
    MusicReader reader(file, stop);
    std::vector<StereoSample> samples;
    bool hasMore = true;
    while (hasMore && samples.empty())
        hasMore = reader.read(samples);
    // An interrupted file looks like one that ended.
    if (stop.stop_requested())
        throw ExportError(ExportError::Kind::cancelled);
    if (samples.empty()) {
        throw ExportError(ExportError::Kind::appendFailed,
                          std::string("music ").append(file.string()).append(": there is no sound in it"));
    }
}

double musicSeconds(const std::filesystem::path& file, const std::stop_token& stop) {
    MusicReader reader(file, stop);
    std::size_t heard = 0;
    std::vector<StereoSample> samples;
    bool hasMore = true;
    while (hasMore) {
        samples.clear();
        hasMore = reader.read(samples);
        heard += samples.size();
    }
    if (stop.stop_requested())
        throw ExportError(ExportError::Kind::cancelled);
    return static_cast<double>(heard) / audioSampleRate;
}

} // namespace Export
