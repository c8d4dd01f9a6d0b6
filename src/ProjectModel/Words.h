// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

/// The texts that name the platform, in the words of this one. They stand here and nowhere else, so that one
/// look tells what the program calls the computer it runs on and its parts.
namespace ProjectModel::Words {

// Who captions on the computer itself.
inline constexpr std::string_view builtInProvider = "Built-in (on-device)";
inline constexpr std::string_view builtInUnavailable =
    "The built-in captions are not available on this computer.";

// What happens to photos with a caption provider.
inline constexpr std::string_view privacyTitle = "Privacy: photos leave your computer";
/// Follows the name of the provider.
inline constexpr std::string_view privacyMessageEnd =
    " captions in the cloud. Each selected photo is uploaded to generate its caption — it does not stay on "
    "your computer. Built-in and Ollama caption locally instead.";
inline constexpr std::string_view providersNote =
    "Built-in and Ollama caption on this computer. OpenRouter sends each photo to the cloud.";
/// Between asterisks: what is emphasised.
inline constexpr std::string_view cloudNote =
    "Privacy: OpenRouter is a **cloud** service. Every photo you caption is uploaded to OpenRouter and the "
    "model "
    "provider you choose — the images leave your computer. Don’t use it for photos you want to keep private; "
    "use Built-in or Ollama for that.";

// Where photos come from.
inline constexpr std::string_view importHelp = "Import photos from a folder or a photo-library album";
inline constexpr std::string_view emptyProject = "Import a folder or a photo-library album to get started.";

// What stands instead of the library's albums when it cannot be read.
inline constexpr std::string_view noPhotoLibraryTitle = "No photo library found";
inline constexpr std::string_view noPhotoLibraryMessage =
    "Roamly looks for the libraries of Shotwell and digiKam and found none.";
inline constexpr std::string_view noPhotoLibraryButton = "OK";
inline constexpr std::string_view photoLibraryDeniedTitle = "Photo library access is off";
[[nodiscard]] inline std::string photoLibraryDeniedMessage(std::string_view folder) {
    return "Roamly can’t read your photo library because access to “" + std::string{folder} +
           "” was denied. Change the folder’s permissions, then try importing again.";
}

/// Shows a movie, a photo or a folder in the file browser.
inline constexpr std::string_view showInFiles = "Show in Files";

} // namespace ProjectModel::Words
