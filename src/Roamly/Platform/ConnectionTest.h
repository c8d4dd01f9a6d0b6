// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Captioning/HTTPTransport.h>

#include <memory>
#include <stop_token>
#include <string>
#include <string_view>

/// Whether a caption backend answers with what was typed into the settings, stored or not. Waits for the
/// network; sends no photo. Any thread. Never fails; a stop makes it return early with an outcome that means
/// nothing.
namespace Platform::ConnectionTest {

struct Outcome {
    bool isGood = false;
    /// What to show.
    std::string_view text;
};

using Transport = std::shared_ptr<const Captioning::HTTPTransport>;

[[nodiscard]] Outcome ollama(const std::string& baseURL, const std::string& model, const Transport& transport,
                             const std::stop_token& stop = {});

/// Without a key nothing is asked. `baseURL` is the service's address.
[[nodiscard]] Outcome openRouter(const std::string& key, const std::string& model, const Transport& transport,
                                 const std::string& baseURL, const std::stop_token& stop = {});

} // namespace Platform::ConnectionTest
