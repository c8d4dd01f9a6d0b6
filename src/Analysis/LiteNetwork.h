#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

namespace Analysis {

/// A TensorFlow Lite network with one input and a few outputs, all single precision.
class LiteNetwork {
public:
    /// The file must hold a network with an input of `inputLength` numbers and outputs of at least the given
    /// lengths. Throws NetworkFileError.
    LiteNetwork(const std::filesystem::path& file, std::size_t inputLength,
                std::vector<std::size_t> outputLengths);
    ~LiteNetwork();
    LiteNetwork(const LiteNetwork&) = delete;
    LiteNetwork& operator=(const LiteNetwork&) = delete;

    /// One output after another. Runs in the calling thread, side by side with other calls. Throws
    /// std::runtime_error.
    [[nodiscard]] std::vector<std::vector<float>> run(std::span<const float> input) const;

private:
    struct Runtime;
    std::unique_ptr<Runtime> m_runtime;
};

} // namespace Analysis
