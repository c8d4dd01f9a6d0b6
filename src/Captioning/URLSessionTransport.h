#pragma once

#include <Captioning/HTTPTransport.h>
#include <Http/CurlTransport.h>

namespace Captioning {

/// The transport that the application gives the backends.
using URLSessionTransport = Http::CurlTransport;

} // namespace Captioning
