// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Sheets/Alert.h>

/// The alerts of the window, as contents of an Alert.
namespace Sheets::Alerts {

/// Before photos begin to leave the computer: Cancel, Agree. The texts are the rule's own, `agreement` the
/// button's.
[[nodiscard]] AlertContent privacyConfirmation(const QString& title, const QString& message,
                                               const QString& agreement);

/// Ok.
[[nodiscard]] AlertContent noPhotoLibrary();
/// ShowInFiles, Cancel.
[[nodiscard]] AlertContent photoLibraryDenied(const QString& folder);

/// Before a project is closed that differs from its file: Discard, Cancel, Save.
[[nodiscard]] AlertContent saveChanges(const QString& projectName);

/// Another program wrote the file of a project that was changed here too: Cancel, LoadFile, KeepMine.
[[nodiscard]] AlertContent fileChanged(const QString& projectName);

/// Something from before a crash is there: Discard, Cancel (to be asked again), Recover. `savedAt` is what to
/// show of the time.
[[nodiscard]] AlertContent recovery(const QString& projectName, const QString& savedAt);

/// Ok.
[[nodiscard]] AlertContent error(const QString& title, const QString& message);

} // namespace Sheets::Alerts
