// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <stdexcept>

namespace CommandLine {

/// The command was called in a way that it does not understand; exit status 2. `what()` is one sentence.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The command could not do what it was asked to; exit status 1. `what()` is one sentence.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The user ended the command; exit status 130. `what()` is one sentence.
class Interrupted : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace CommandLine
