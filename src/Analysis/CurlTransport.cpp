#include <Analysis/HttpTransport.h>
#include <Analysis/ReverseGeocoding.h>

#include <curl/curl.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string_view>

namespace Analysis {

namespace {

constexpr long timeoutSeconds = 20;
constexpr long connectTimeoutSeconds = 10;
constexpr long mostRedirects = 3;
constexpr std::size_t largestBody = 1 << 20;
/// How often a transfer looks whether it is to stop.
constexpr int pollMilliseconds = 100;

template <auto Free>
struct Deleter {
    template <typename Resource>
    void operator()(Resource* resource) const {
        Free(resource);
    }
};
using Easy = std::unique_ptr<CURL, Deleter<curl_easy_cleanup>>;
using Multi = std::unique_ptr<CURLM, Deleter<curl_multi_cleanup>>;
using List = std::unique_ptr<curl_slist, Deleter<curl_slist_free_all>>;

std::size_t takeBody(char* data, std::size_t size, std::size_t count, void* target) {
    std::string& body = static_cast<HttpResponse*>(target)->body;
    if (body.size() + size * count > largestBody)
        return 0;
    body.append(data, size * count);
    return size * count;
}

std::string_view trimmed(std::string_view text) {
    const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

std::size_t takeHeader(char* data, std::size_t size, std::size_t count, void* target) {
    const std::string_view line(data, size * count);
    auto& headers = static_cast<HttpResponse*>(target)->headers;
    // After a redirect the headers begin anew.
    if (line.starts_with("HTTP/"))
        headers.clear();
    if (const std::size_t colon = line.find(':'); colon != std::string_view::npos) {
        std::string name(trimmed(line.substr(0, colon)));
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        headers[name] = trimmed(line.substr(colon + 1));
    }
    return size * count;
}

HttpResponse perform(const HttpRequest& request, const std::stop_token& stop) {
    static std::once_flag initialised;
    std::call_once(initialised, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });

    const Easy easy(curl_easy_init());
    const Multi multi(curl_multi_init());
    if (!easy || !multi)
        throw GeocodingError("out of memory");
    HttpResponse response;
    List headers;
    for (const auto& [name, value] : request.headers) {
        std::string line = name;
        line.append(": ").append(value);
        if (curl_slist* longer = curl_slist_append(headers.get(), line.c_str())) {
            (void)headers.release();
            headers.reset(longer);
        }
    }
    CURL* handle = easy.get();
    curl_easy_setopt(handle, CURLOPT_URL, request.url.c_str());
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headers.get());
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(handle, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(handle, CURLOPT_MAXREDIRS, mostRedirects);
    curl_easy_setopt(handle, CURLOPT_TIMEOUT, timeoutSeconds);
    curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT, connectTimeoutSeconds);
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, takeBody);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &response);
    curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, takeHeader);
    curl_easy_setopt(handle, CURLOPT_HEADERDATA, &response);

    curl_multi_add_handle(multi.get(), handle);
    CURLcode result = CURLE_OK;
    // A request that is to end at once ends the wait, from whatever thread that comes.
    const std::stop_callback wake(stop, [&] { curl_multi_wakeup(multi.get()); });
    for (int running = 1; running > 0;) {
        if (stop.stop_requested()) {
            result = CURLE_ABORTED_BY_CALLBACK;
            break;
        }
        if (curl_multi_perform(multi.get(), &running) != CURLM_OK ||
            (running > 0 &&
             curl_multi_poll(multi.get(), nullptr, 0, pollMilliseconds, nullptr) != CURLM_OK)) {
            result = CURLE_FAILED_INIT;
            break;
        }
    }
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi.get(), &left)) {
        if (message->msg == CURLMSG_DONE)
            result = message->data.result;
    }
    long status = 0;
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
    curl_multi_remove_handle(multi.get(), handle);
    if (result != CURLE_OK)
        throw GeocodingError(curl_easy_strerror(result));
    response.status = static_cast<int>(status);
    return response;
}

} // namespace

HttpTransport curlTransport() {
    return perform;
}

} // namespace Analysis
