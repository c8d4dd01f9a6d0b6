// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Http/Url.h>

#include <gtest/gtest.h>

namespace Http {
namespace {

TEST(UrlTest, AppendsAPathWithAndWithoutATrailingSlash) {
    EXPECT_EQ(appendingPath("http://host", "a/b"), "http://host/a/b");
    EXPECT_EQ(appendingPath("http://host/", "a/b"), "http://host/a/b");
    EXPECT_EQ(appendingPath("http://host/proxy/", "a/b"), "http://host/proxy/a/b");
}

TEST(UrlTest, KeepsAQueryAndAFragmentBehindThePath) {
    EXPECT_EQ(appendingPath("http://host/x?key=1", "a"), "http://host/x/a?key=1");
    EXPECT_EQ(appendingPath("http://host/x/#top?no", "a"), "http://host/x/a#top?no");
}

TEST(UrlTest, TellsHttpAddressesFromOtherTexts) {
    for (const char* text : {"http://host", "https://host:8080/path?q", "HTTP://127.0.0.1", "http://[::1]:1"})
        EXPECT_TRUE(isHttpUrl(text)) << text;
    for (const char* text : {"", "host", "file:///etc/passwd", "gopher://host", "http://", "http://[bad",
                             "http://host name", "//host"})
        EXPECT_FALSE(isHttpUrl(text)) << text;
}

TEST(UrlTest, StaysOnAHostOnlyWithItsPort) {
    EXPECT_TRUE(staysOnHost("http://host/a", "http://host:80/b"));
    EXPECT_FALSE(staysOnHost("http://host/a", "http://host:81/a"));
    EXPECT_FALSE(staysOnHost("http://host/a", "http://other/a"));
    EXPECT_FALSE(staysOnHost("http://host/a", "http://host.other/a"));
    EXPECT_FALSE(staysOnHost("http://host/a", "not an address"));
}

TEST(UrlTest, MayTurnToAnEncryptedConnectionButNeverBack) {
    EXPECT_TRUE(staysOnHost("http://host/a", "https://host/a"));
    EXPECT_FALSE(staysOnHost("https://host/a", "http://host/a"));
}

TEST(UrlTest, KnowsThisMachine) {
    for (const char* url :
         {"http://localhost:11434", "http://127.0.0.1", "http://127.1.2.3/x", "http://[::1]"})
        EXPECT_TRUE(isLoopback(url)) << url;
    for (const char* url : {"http://host", "http://localhost.example", "http://10.0.0.1", "nonsense", ""})
        EXPECT_FALSE(isLoopback(url)) << url;
}

} // namespace
} // namespace Http
