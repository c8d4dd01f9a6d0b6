// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace Http {

/// The URL with a path appended, whether or not it ends in a slash: "http://host/a" and "b/c" give
/// "http://host/a/b/c". A query or fragment stays behind the path.
[[nodiscard]] std::string appendingPath(const std::string& url, const std::string& path);

/// Whether the text is an absolute http or https URL with a host.
[[nodiscard]] bool isHttpUrl(const std::string& text);

/// Same host and port, and never from an encrypted connection to a plain one.
[[nodiscard]] bool staysOnHost(const std::string& from, const std::string& to);

/// Whether the URL's host is this machine.
[[nodiscard]] bool isLoopback(const std::string& url);

} // namespace Http
