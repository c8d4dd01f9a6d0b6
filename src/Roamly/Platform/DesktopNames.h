// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// By which the desktop knows the program.
namespace Platform::DesktopNames {

/// To people.
inline constexpr const char* program = "Roamly";
/// Of the desktop file, without its ending.
inline constexpr const char* identifier = "app.roamly.Roamly";
inline constexpr const char* projectMimeType = "application/vnd.roamly.project+json";
/// `%u` stands for the file's URI.
inline constexpr const char* openCommand = "roamly %u";

} // namespace Platform::DesktopNames
