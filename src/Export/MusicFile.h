#pragma once

#include <filesystem>
#include <stop_token>

namespace Export {

/// Looks whether an export could play the file, by decoding its first sound. Throws ExportError:
/// appendFailed, with the reason, when it could not; cancelled.
void checkMusic(const std::filesystem::path& file, const std::stop_token& stop = {});

} // namespace Export
