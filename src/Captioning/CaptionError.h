// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <exception>
#include <string>
#include <variant>

namespace Captioning {

/// The backend cannot be used at all; the message is a whole sentence for the user.
struct BackendUnavailable {
    std::string message;

    friend bool operator==(const BackendUnavailable&, const BackendUnavailable&) = default;
};

/// The server answered with a status outside 200…299.
struct HttpFailure {
    int status = 0;

    friend bool operator==(const HttpFailure&, const HttpFailure&) = default;
};

/// The request could not be carried out; the detail is what the system said.
struct TransportFailure {
    std::string detail;

    friend bool operator==(const TransportFailure&, const TransportFailure&) = default;
};

/// The model answered, but with no usable caption.
struct EmptyResponse {
    friend bool operator==(const EmptyResponse&, const EmptyResponse&) = default;
};

/// Why one caption could not be written. The wording for the user is the caption controller's, which knows
/// the backend's name.
class CaptionError : public std::exception {
public:
    using Case = std::variant<BackendUnavailable, HttpFailure, TransportFailure, EmptyResponse>;

    explicit CaptionError(Case which);

    [[nodiscard]] const Case& which() const { return m_which; }
    /// For logs; not the user's wording.
    [[nodiscard]] const char* what() const noexcept override;

    friend bool operator==(const CaptionError& a, const CaptionError& b) { return a.m_which == b.m_which; }

private:
    Case m_which;
};

} // namespace Captioning
