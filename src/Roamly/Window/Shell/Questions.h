// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Instant.h>
#include <Roamly/Document/CaptionProvider.h>
#include <Roamly/Window/Shell/DocumentQuestions.h>
#include <Roamly/Window/Shell/FileChoosers.h>

#include <functional>

class QWidget;

namespace Shell {

/// Asks over the window, with its sheets.
[[nodiscard]] DocumentQuestions questionsOver(QWidget* window, const FileChoosers& choosers);

/// Tells that something could not be done.
void tell(QWidget* window, const QString& sentence);

/// What this program is.
void tellAbout(QWidget* window);

/// What the user must agree to before photos leave the computer; anything but a clear yes is a no.
void askForConsent(QWidget* window, const Document::PrivacyConfirmation& confirmation,
                   std::function<void(bool agreed)> answer);

enum class RecoveryAnswer { Recover, Discard, Later };
/// What becomes of an unsaved project that a crash left; `original` is its file, where it has one.
void askToRecover(QWidget* window, const std::optional<std::filesystem::path>& original,
                  Foundation::Instant written, std::function<void(RecoveryAnswer)> answer);

/// Whether the window may close although its movie is not finished.
void askToEndExport(QWidget* window, std::function<void(bool agreed)> answer);

} // namespace Shell
