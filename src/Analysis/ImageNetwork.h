// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace Analysis {

/// A trained network that is shown one square picture and answers with lists of numbers, on ONNX Runtime. One
/// picture at a time: batches of 4 and of 16 took as long for each.
class ImageNetwork {
public:
    /// What the network calls one of its answers, and how many numbers it holds; 0 stands for any number.
    struct Output {
        std::string name;
        std::size_t length = 0;
    };

    /// The file must hold a network that takes pictures of `side` × `side` pixels and has the given outputs,
    /// perhaps among others. Throws NetworkFileError. Some
    /// distributions' runtimes chatter on std::cerr meanwhile.
    ImageNetwork(const std::filesystem::path& file, int side, std::vector<Output> outputs);
    ~ImageNetwork();
    ImageNetwork(const ImageNetwork&) = delete;
    ImageNetwork& operator=(const ImageNetwork&) = delete;

    /// One list for each output, in their order. `planes` holds all red values, then all green and all blue
    /// ones, 0…255, rows from top to bottom. The same answer for the same picture, whatever else runs. Uses
    /// one core; asked in several threads it uses several. Any thread. Throws std::runtime_error
    /// when the network fails.
    [[nodiscard]] std::vector<std::vector<float>> run(std::span<const float> planes) const;

private:
    struct Session;
    std::unique_ptr<Session> m_session;
};

} // namespace Analysis
