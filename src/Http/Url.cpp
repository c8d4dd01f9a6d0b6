// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Http/Url.h>

#include <curl/curl.h>

#include <algorithm>
#include <memory>

namespace Http {

namespace {

struct UrlCleanup {
    void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
struct CurlFree {
    void operator()(char* text) const { curl_free(text); }
};
using UrlHandle = std::unique_ptr<CURLU, UrlCleanup>;

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

} // namespace

std::string appendingPath(const std::string& url, const std::string& path) {
    const std::size_t end = std::min(url.find('?'), url.find('#'));
    const std::string base = url.substr(0, end);
    const std::string rest = end == std::string::npos ? "" : url.substr(end);
    return base + (base.ends_with('/') ? "" : "/") + path + rest;
}

bool isHttpUrl(const std::string& text) {
    const UrlHandle url = parsed(text);
    if (!url)
        return false;
    const std::string scheme = part(url.get(), CURLUPART_SCHEME);
    return (scheme == "http" || scheme == "https") && !part(url.get(), CURLUPART_HOST).empty();
}

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

bool isLoopback(const std::string& url) {
    const UrlHandle handle = parsed(url);
    const std::string host = handle ? part(handle.get(), CURLUPART_HOST) : "";
    return host == "localhost" || host == "[::1]" || host.starts_with("127.");
}

} // namespace Http
