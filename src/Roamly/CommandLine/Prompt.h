// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/CommandLine/Console.h>
#include <Roamly/Document/CaptionProvider.h>

#include <stop_token>
#include <string>
#include <string_view>

namespace CommandLine {

/// True when someone sits at a terminal who can be asked.
[[nodiscard]] bool canAsk();

/// Asks on the terminal; only an answer that begins with "y" is a yes. Throws Foundation::Cancelled.
[[nodiscard]] bool askYesNo(std::string_view question, const std::stop_token& stop);

/// Asks for something that must not be seen: on a terminal without echo, otherwise the whole of standard
/// input. Without white space at its ends. Throws Foundation::Cancelled.
[[nodiscard]] std::string askSecret(std::string_view question, const std::stop_token& stop);

/// Lets the terminal show again what is typed, if a question turned that off, for a process that is about to
/// end without unwinding. Thread-safe.
void restoreTerminal();

/// Gets the user's consent: says what it is about and asks, on a terminal; elsewhere the user must have said
/// --yes. Throws Failure when they did not, Foundation::Cancelled.
void confirm(const Document::PrivacyConfirmation& confirmation, bool saidYes, Console& console,
             const std::stop_token& stop);

} // namespace CommandLine
