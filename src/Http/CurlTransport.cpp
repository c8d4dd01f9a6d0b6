// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Cancellation.h>
#include <Foundation/Text.h>
#include <Http/CurlTransport.h>
#include <Http/Url.h>

#include <curl/curl.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>

namespace Http {

namespace {

struct EasyCleanup {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
struct MultiCleanup {
    void operator()(CURLM* handle) const { curl_multi_cleanup(handle); }
};
struct ListCleanup {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using EasyHandle = std::unique_ptr<CURL, EasyCleanup>;
using MultiHandle = std::unique_ptr<CURLM, MultiCleanup>;
using HeaderList = std::unique_ptr<curl_slist, ListCleanup>;

constexpr const char* cannotStart = "The HTTP library could not be started.";

void initialiseCurl() {
    static const CURLcode started = curl_global_init(CURL_GLOBAL_DEFAULT);
    if (started != CURLE_OK)
        throw TransportError(cannotStart);
}

std::string lowerCase(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

struct Arriving {
    Response response;
    bool tooLarge = false;
};

std::size_t receiveBody(char* data, std::size_t size, std::size_t count, void* target) {
    auto& arriving = *static_cast<Arriving*>(target);
    const std::size_t length = size * count;
    if (arriving.response.body.size() + length > CurlTransport::maxResponseBytes) {
        arriving.tooLarge = true;
        return 0;
    }
    arriving.response.body.append(data, length);
    return length;
}

std::size_t receiveHeader(char* data, std::size_t size, std::size_t count, void* target) {
    const std::string_view line(data, size * count);
    auto& headers = static_cast<Arriving*>(target)->response.headers;
    // After an interim answer or a proxy's the headers begin anew.
    if (line.starts_with("HTTP/")) {
        headers.clear();
    } else if (const std::size_t colon = line.find(':'); colon != std::string_view::npos) {
        headers[lowerCase(Foundation::trimmed(line.substr(0, colon)))] =
            Foundation::trimmed(line.substr(colon + 1));
    }
    return size * count;
}

HeaderList headerList(const Request& request) {
    HeaderList list;
    const auto append = [&list](const std::string& line) {
        curl_slist* const longer = curl_slist_append(list.get(), line.c_str());
        if (longer == nullptr)
            throw TransportError("Out of memory.");
        (void)list.release();
        list.reset(longer);
    };
    for (const auto& [name, value] : request.headers) {
        // A line break in a value (a pasted key, say) would smuggle in further headers.
        if ((name + value).find_first_of("\r\n") != std::string::npos)
            throw TransportError("A request header holds a line break.");
        std::string line = name;
        // The library takes a header without a value by a semicolon.
        line.append(value.empty() ? ";" : ": ").append(value);
        append(line);
    }
    // The library's own headers stay out; a request carries what its sender says.
    for (const std::string_view own : {"Accept", "Expect", "Content-Type"}) {
        if (std::ranges::none_of(request.headers, [&](const auto& header) { return header.first == own; }))
            append(std::string(own) + ":");
    }
    return list;
}

/// Waits for the end of the transfer. The handle is in `multi` meanwhile, and no longer afterwards.
CURLcode performed(CURL* handle, CURLM* multi, const std::stop_token& stop) {
    struct Removal {
        CURL* handle;
        CURLM* multi;
        ~Removal() { curl_multi_remove_handle(multi, handle); }
    };
    if (curl_multi_add_handle(multi, handle) != CURLM_OK)
        throw TransportError(cannotStart);
    const Removal removal{handle, multi};
    while (true) {
        int running = 0;
        curl_multi_perform(multi, &running);
        int queued = 0;
        while (const CURLMsg* note = curl_multi_info_read(multi, &queued)) {
            if (note->msg == CURLMSG_DONE)
                return note->data.result;
        }
        Foundation::throwIfStopped(stop);
        curl_multi_poll(multi, nullptr, 0, 1000, nullptr);
    }
}

} // namespace

/// What one request at a time uses. The open connections are the multi handle's.
struct CurlTransport::Connections {
    EasyHandle easy{curl_easy_init()};
    MultiHandle multi{curl_multi_init()};
};

CurlTransport::CurlTransport() {
    initialiseCurl();
}

CurlTransport::~CurlTransport() = default;

std::unique_ptr<CurlTransport::Connections> CurlTransport::take() const {
    {
        const std::lock_guard lock{m_mutex};
        if (m_idle)
            return std::move(m_idle);
    }
    auto fresh = std::make_unique<Connections>();
    if (!fresh->easy || !fresh->multi)
        throw TransportError(cannotStart);
    return fresh;
}

void CurlTransport::putBack(std::unique_ptr<Connections> connections) const {
    const std::lock_guard lock{m_mutex};
    m_idle = std::move(connections);
}

Response CurlTransport::send(const Request& request, const std::stop_token& stop) const {
    Foundation::throwIfStopped(stop);
    std::unique_ptr<Connections> connections = take();
    Response response = exchange(*connections, request, stop);
    putBack(std::move(connections));
    return response;
}

Response CurlTransport::exchange(Connections& connections, const Request& request,
                                 const std::stop_token& stop) {
    CURL* const handle = connections.easy.get();
    CURLM* const multi = connections.multi.get();
    const std::stop_callback wake{stop, [multi] { curl_multi_wakeup(multi); }};
    const HeaderList headers = headerList(request);
    const auto deadline = std::chrono::steady_clock::now() + request.timeout;

    std::string url = request.url;
    std::string method = request.method;
    for (int redirects = 0;; ++redirects) {
        const auto remaining =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (remaining.count() <= 0)
            throw TransportError("The request timed out.");

        curl_easy_reset(handle);
        Arriving arriving;
        std::string message(CURL_ERROR_SIZE, '\0');
        curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
#if LIBCURL_VERSION_NUM >= 0x075500
        curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
#else
        curl_easy_setopt(handle, CURLOPT_PROTOCOLS, CURLPROTO_HTTP | CURLPROTO_HTTPS);
#endif
        curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headers.get());
        curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(remaining.count()));
        curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(remaining.count()));
        curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, receiveBody);
        curl_easy_setopt(handle, CURLOPT_WRITEDATA, &arriving);
        curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, receiveHeader);
        curl_easy_setopt(handle, CURLOPT_HEADERDATA, &arriving);
        curl_easy_setopt(handle, CURLOPT_ERRORBUFFER, message.data());
        // A proxy of the network cannot reach this machine's own server.
        if (isLoopback(url))
            curl_easy_setopt(handle, CURLOPT_PROXY, "");
        if (method == "POST") {
            curl_easy_setopt(handle, CURLOPT_POST, 1L);
            curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE_LARGE,
                             static_cast<curl_off_t>(request.body.size()));
            curl_easy_setopt(handle, CURLOPT_POSTFIELDS, request.body.data());
        }

        const CURLcode result = performed(handle, multi, stop);
        long status = 0;
        curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
        char* redirectUrl = nullptr;
        curl_easy_getinfo(handle, CURLINFO_REDIRECT_URL, &redirectUrl);
        const std::string target = redirectUrl == nullptr ? "" : redirectUrl;

        if (arriving.tooLarge)
            throw TransportError("The response is larger than 4 MB.");
        if (result != CURLE_OK) {
            const std::string detail = message.substr(0, message.find('\0'));
            throw TransportError(detail.empty() ? curl_easy_strerror(result) : detail);
        }
        if (!target.empty() && redirects < maxRedirects && staysOnHost(url, target)) {
            // What browsers and other clients do: only 307 and 308 repeat a POST.
            if (status != 307 && status != 308)
                method = "GET";
            url = target;
            continue;
        }
        // The handle is not to point at what ends here.
        curl_easy_reset(handle);
        arriving.response.status = static_cast<int>(status);
        return std::move(arriving.response);
    }
}

} // namespace Http
