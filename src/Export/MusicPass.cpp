// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/MusicPass.h>
#include <Export/MusicReader.h>

namespace Export {

MusicPass::MusicPass(const std::filesystem::path& file, const std::stop_token& stop)
    : m_reader(std::make_unique<MusicReader>(file, stop)) {}

MusicPass::~MusicPass() = default;

bool MusicPass::read(std::vector<StereoSample>& samples) {
    return m_reader->read(samples);
}

} // namespace Export
