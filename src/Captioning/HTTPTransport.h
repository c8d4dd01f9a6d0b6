// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Http/Transport.h>

namespace Captioning {

/// What the network backends send their requests through.
using HTTPTransport = Http::Transport;
using HTTPRequest = Http::Request;
using HTTPResponse = Http::Response;
using Http::TransportError;

} // namespace Captioning
