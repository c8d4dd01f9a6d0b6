// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Captioning/HTTPTransport.h>
#include <Http/CurlTransport.h>

namespace Captioning {

/// The transport that the application gives the backends.
using URLSessionTransport = Http::CurlTransport;

} // namespace Captioning
