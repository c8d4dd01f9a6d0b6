// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/JsonWriter.h>

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Foundation {
namespace {

using Layout = JsonWriter::Layout;

template <typename Value>
std::string written(const Value& value) {
    return JsonWriter{Layout::Compact}.value(value).text();
}

std::string sample(Layout layout) {
    JsonWriter writer{layout};
    writer.beginObject()
        .member("a", 1)
        .key("list")
        .beginArray()
        .value("x")
        .beginArray()
        .endArray()
        .beginObject()
        .endObject()
        .beginObject()
        .member("b", true)
        .endObject()
        .null()
        .raw("{\"made\":1}")
        .endArray()
        .member("z", 0.5)
        .endObject();
    return writer.text();
}

TEST(JsonWriterTest, WritesCompactlyOnOneLine) {
    EXPECT_EQ(sample(Layout::Compact), R"({"a":1,"list":["x",[],{},{"b":true},null,{"made":1}],"z":0.5})");
}

TEST(JsonWriterTest, WritesPrettilyOneElementALine) {
    EXPECT_EQ(sample(Layout::Pretty), R"({
  "a": 1,
  "list": [
    "x",
    [],
    {},
    {
      "b": true
    },
    null,
    {"made":1}
  ],
  "z": 0.5
})");
}

TEST(JsonWriterTest, WritesEmptyContainersTight) {
    EXPECT_EQ(JsonWriter{Layout::Pretty}.beginObject().endObject().text(), "{}");
    EXPECT_EQ(JsonWriter{Layout::Pretty}.beginArray().endArray().text(), "[]");
}

TEST(JsonWriterTest, EscapesOnlyWhatMustBe) {
    EXPECT_EQ(written("\"\\\b\f\n\r\t/"), R"("\"\\\b\f\n\r\t/")");
    EXPECT_EQ(written(std::string_view{"\0\x01\x1F\x7F", 4}), "\"\\u0000\\u0001\\u001f\x7F\"");
    EXPECT_EQ(written("é日😀\u2028"), "\"é日😀\u2028\"");
    EXPECT_EQ(JsonWriter{Layout::Compact}.beginObject().member("a\"b", "").endObject().text(),
              R"({"a\"b":""})");
}

TEST(JsonWriterTest, RefusesTextsThatAreNotUtf8AndGoesOnAfterIt) {
    JsonWriter writer{Layout::Compact};
    writer.beginArray().value("a");
    EXPECT_THROW(writer.value("\xFF"), std::invalid_argument);
    EXPECT_EQ(writer.value("b").endArray().text(), R"(["a","b"])");
}

TEST(JsonWriterTest, RefusesNumbersThatAreNotFinite) {
    for (const double number :
         {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()})
        EXPECT_THROW(static_cast<void>(written(number)), std::invalid_argument);
}

TEST(JsonWriterTest, WritesIntegersInFull) {
    EXPECT_EQ(written(0), "0");
    EXPECT_EQ(written(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(written(std::numeric_limits<std::int64_t>::max()), "9223372036854775807");
}

TEST(JsonWriterTest, WritesNumbersAsShortAsTheyCanBeReadBack) {
    EXPECT_EQ(written(0.1), "0.1");
    EXPECT_EQ(written(5.0), "5");
    EXPECT_EQ(written(-122.4194), "-122.4194");
    EXPECT_EQ(written(1e300), "1e+300");
    EXPECT_EQ(written(0.1 + 0.2), "0.30000000000000004");
}

TEST(JsonWriterTest, KeepsTheSignOfZeroForReadersThatKnowIntegers) {
    EXPECT_EQ(written(0.0), "0");
    EXPECT_EQ(written(-0.0), "-0.0");
}

TEST(JsonWriterTest, WritesNumbersThatReadBackToTheLastBit) {
    std::mt19937_64 engine{1};
    for (int i = 0; i < 20'000; ++i) {
        const auto number = std::bit_cast<double>(engine());
        if (!std::isfinite(number))
            continue;
        const std::string text = written(number);
        double read = 0;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), read);
        ASSERT_EQ(result.ptr, text.data() + text.size()) << text;
        ASSERT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(number)) << text;
    }
}

TEST(JsonWriterTest, HandsItsTextOver) {
    JsonWriter writer{Layout::Compact};
    writer.beginArray().value(1).endArray();
    EXPECT_EQ(writer.takeText(), "[1]");
}

} // namespace
} // namespace Foundation
