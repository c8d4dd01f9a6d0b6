#include <Captioning/URLSessionTransport.h>
#include <Foundation/Cancellation.h>

#include <curl/curl.h>

#include <memory>
#include <mutex>
#include <utility>

namespace Captioning {

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
struct UrlCleanup {
    void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
struct CurlFree {
    void operator()(char* text) const { curl_free(text); }
};
using EasyHandle = std::unique_ptr<CURL, EasyCleanup>;
using MultiHandle = std::unique_ptr<CURLM, MultiCleanup>;
using HeaderList = std::unique_ptr<curl_slist, ListCleanup>;
using UrlHandle = std::unique_ptr<CURLU, UrlCleanup>;

void initialiseCurl() {
    static const CURLcode started = curl_global_init(CURL_GLOBAL_DEFAULT);
    if (started != CURLE_OK)
        throw TransportError("The HTTP library could not be started.");
}

UrlHandle parsed(const std::string& text) {
    UrlHandle url{curl_url()};
    if (!url || curl_url_set(url.get(), CURLUPART_URL, text.c_str(), 0) != CURLUE_OK)
        return nullptr;
    return url;
}

std::string part(CURLU* url, CURLUPart which, unsigned int flags = 0) {
    char* text = nullptr;
    if (curl_url_get(url, which, &text, flags) != CURLUE_OK)
        return {};
    const std::unique_ptr<char, CurlFree> owner{text};
    return text;
}

/// Same host and port, and never from an encrypted connection to a plain one.
bool staysOnHost(const std::string& from, const std::string& to) {
    const UrlHandle a = parsed(from);
    const UrlHandle b = parsed(to);
    if (!a || !b)
        return false;
    const std::string schemeA = part(a.get(), CURLUPART_SCHEME);
    const std::string schemeB = part(b.get(), CURLUPART_SCHEME);
    if (part(a.get(), CURLUPART_HOST) != part(b.get(), CURLUPART_HOST))
        return false;
    if (schemeA == schemeB) {
        return part(a.get(), CURLUPART_PORT, CURLU_DEFAULT_PORT) ==
               part(b.get(), CURLUPART_PORT, CURLU_DEFAULT_PORT);
    }
    return schemeA == "http" && schemeB == "https";
}

bool isLoopback(const std::string& text) {
    const UrlHandle url = parsed(text);
    const std::string host = url ? part(url.get(), CURLUPART_HOST) : "";
    return host == "localhost" || host == "[::1]" || host.starts_with("127.");
}

struct Body {
    std::string text;
    bool tooLarge = false;
};

std::size_t receive(char* data, std::size_t size, std::size_t count, void* target) {
    auto& body = *static_cast<Body*>(target);
    const std::size_t length = size * count;
    if (body.text.size() + length > URLSessionTransport::maxResponseBytes) {
        body.tooLarge = true;
        return 0;
    }
    body.text.append(data, length);
    return length;
}

HeaderList headerList(const HTTPRequest& request) {
    curl_slist* list = nullptr;
    const auto append = [&list](const std::string& line) {
        curl_slist* longer = curl_slist_append(list, line.c_str());
        if (longer == nullptr) {
            curl_slist_free_all(list);
            throw TransportError("Out of memory.");
        }
        list = longer;
    };
    for (const auto& [name, value] : request.headers) {
        // A line break in a value (a pasted key, say) would smuggle in further headers.
        if ((name + value).find_first_of("\r\n") != std::string::npos) {
            curl_slist_free_all(list);
            throw TransportError("A request header holds a line break.");
        }
        std::string line = name;
        // The library takes a header without a value by a semicolon.
        line.append(value.empty() ? ";" : ": ").append(value);
        append(line);
    }
    // The library's own headers stay out; what a request carries is what its backend says.
    append("Accept:");
    append("Expect:");
    bool hasContentType = false;
    for (const auto& [name, value] : request.headers)
        hasContentType |= name == "Content-Type";
    if (!hasContentType)
        append("Content-Type:");
    return HeaderList{list};
}

} // namespace

/// Idle connections. A handle is taken for one request and put back after it.
struct URLSessionTransport::Session {
    std::mutex mutex;
    EasyHandle idle;

    EasyHandle take() {
        const std::lock_guard lock{mutex};
        return idle ? std::move(idle) : EasyHandle{curl_easy_init()};
    }
    void putBack(EasyHandle handle) {
        const std::lock_guard lock{mutex};
        idle = std::move(handle);
    }
};

URLSessionTransport::URLSessionTransport()
    : m_session(std::make_unique<Session>()) {
    initialiseCurl();
}

URLSessionTransport::~URLSessionTransport() = default;

HTTPResponse URLSessionTransport::send(const HTTPRequest& request, const std::stop_token& stop) const {
    Foundation::throwIfStopped(stop);
    EasyHandle easy = m_session->take();
    const MultiHandle multi{curl_multi_init()};
    if (!easy || !multi)
        throw TransportError("The HTTP library could not be started.");
    const std::stop_callback wake{stop, [&multi] { curl_multi_wakeup(multi.get()); }};
    const auto deadline = std::chrono::steady_clock::now() + request.timeout;

    std::string url = request.url;
    std::string method = request.method;
    for (int redirects = 0;; ++redirects) {
        const auto remaining =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (remaining.count() <= 0)
            throw TransportError("The request timed out.");

        CURL* handle = easy.get();
        curl_easy_reset(handle);
        const HeaderList headers = headerList(request);
        Body body;
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
        curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, receive);
        curl_easy_setopt(handle, CURLOPT_WRITEDATA, &body);
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

        if (curl_multi_add_handle(multi.get(), handle) != CURLM_OK)
            throw TransportError("The HTTP library could not be started.");
        CURLcode result = CURLE_OK;
        for (bool finished = false; !finished;) {
            int running = 0;
            curl_multi_perform(multi.get(), &running);
            int queued = 0;
            while (const CURLMsg* note = curl_multi_info_read(multi.get(), &queued)) {
                if (note->msg == CURLMSG_DONE) {
                    result = note->data.result;
                    finished = true;
                }
            }
            if (!finished && stop.stop_requested()) {
                curl_multi_remove_handle(multi.get(), handle);
                throw Foundation::Cancelled{};
            }
            if (!finished)
                curl_multi_poll(multi.get(), nullptr, 0, 1000, nullptr);
        }
        long status = 0;
        curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
        char* redirectUrl = nullptr;
        curl_easy_getinfo(handle, CURLINFO_REDIRECT_URL, &redirectUrl);
        const std::string target = redirectUrl == nullptr ? "" : redirectUrl;
        curl_multi_remove_handle(multi.get(), handle);

        if (body.tooLarge)
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
        m_session->putBack(std::move(easy));
        return {static_cast<int>(status), std::move(body.text)};
    }
}

std::string appendingPath(const std::string& url, const std::string& path) {
    const std::size_t end = std::min(url.find('?'), url.find('#'));
    const std::string base = url.substr(0, end);
    const std::string rest = end == std::string::npos ? "" : url.substr(end);
    return base + (base.ends_with('/') ? "" : "/") + path + rest;
}

bool isHTTPURL(const std::string& text) {
    const UrlHandle url = parsed(text);
    if (!url)
        return false;
    const std::string scheme = part(url.get(), CURLUPART_SCHEME);
    return (scheme == "http" || scheme == "https") && !part(url.get(), CURLUPART_HOST).empty();
}

} // namespace Captioning
