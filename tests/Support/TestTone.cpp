// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <Support/TestTone.h>

#include <cstdint>
#include <string>

namespace TestTone {

std::filesystem::path write(const std::filesystem::path& file) {
    constexpr std::uint32_t rate = 8000;
    std::string samples;
    for (std::uint32_t i = 0; i < rate; ++i)
        samples += static_cast<char>(i / 10 % 2 == 0 ? 0x60 : 0xA0);
    const auto little = [](std::uint32_t number, int length) {
        std::string bytes;
        for (int i = 0; i < length; ++i)
            bytes += static_cast<char>(number >> (8 * i) & 0xFF);
        return bytes;
    };
    // One channel of eight bits a sample.
    Foundation::writeFileAtomically(file, "RIFF" + little(36 + rate, 4) + "WAVEfmt " + little(16, 4) +
                                              little(1, 2) + little(1, 2) + little(rate, 4) +
                                              little(rate, 4) + little(1, 2) + little(8, 2) + "data" +
                                              little(rate, 4) + samples);
    return file;
}

} // namespace TestTone
