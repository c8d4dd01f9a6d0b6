#pragma once

#include <Foundation/Image.h>

#include <filesystem>
#include <memory>
#include <vector>

namespace Analysis {

/// What one look of the network yields.
struct VisionAnswer {
    /// What the image is like; 2048 numbers, none negative.
    std::vector<float> embedding;
    /// How sure the network is of each of the 1000 ImageNet classes; they sum to 1.
    std::vector<float> classScores;
};

/// The network that knows scenes and things.
class VisionNetwork {
public:
    /// What the program comes with, for `dataFile`.
    static constexpr const char* fileName = "vision-network.bin";

    /// Takes some tenths of a second and some 250 MB of memory. Throws NetworkFileError.
    explicit VisionNetwork(const std::filesystem::path& file);
    ~VisionNetwork();
    VisionNetwork(const VisionNetwork&) = delete;
    VisionNetwork& operator=(const VisionNetwork&) = delete;

    /// The same answer for the same image, whatever else runs. Uses the calling thread only; call it from
    /// several at once to use several cores. Throws std::runtime_error when the image is empty or the
    /// network fails.
    [[nodiscard]] VisionAnswer look(const Foundation::Image& image) const;

private:
    struct Session;
    std::unique_ptr<Session> m_session;
};

} // namespace Analysis
