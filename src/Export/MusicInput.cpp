// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/MusicInput.h>
#include <Export/MusicReader.h>

#include <utility>

namespace Export {

MusicInput::MusicInput(std::filesystem::path file, std::stop_token stop)
    : m_reader(std::make_unique<MusicReader>(std::move(file), std::move(stop))) {}

MusicInput::~MusicInput() = default;
MusicInput::MusicInput(MusicInput&&) noexcept = default;
MusicInput& MusicInput::operator=(MusicInput&&) noexcept = default;

bool MusicInput::read(std::vector<StereoSample>& samples) {
    return m_reader->read(samples);
}

} // namespace Export
