// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// FFmpeg's libraries as this module uses them: owning pointers and error texts. Included by .cpp files and by
// private headers only.

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/dict.h>
#include <libswresample/swresample.h>
}

#include <memory>
#include <string>

namespace Export::Libav {

struct Free {
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(SwrContext* resampler) const { swr_free(&resampler); }
};

using CodecContext = std::unique_ptr<AVCodecContext, Free>;
using Packet = std::unique_ptr<AVPacket, Free>;
using Frame = std::unique_ptr<AVFrame, Free>;
using Resampler = std::unique_ptr<SwrContext, Free>;

/// Throw std::bad_alloc.
[[nodiscard]] Packet makePacket();
[[nodiscard]] Frame makeFrame();

/// A channel layout that releases what it allocated.
class ChannelLayout {
public:
    ChannelLayout() = default;
    explicit ChannelLayout(const AVChannelLayout& layout) { assign(layout); }
    ~ChannelLayout() { av_channel_layout_uninit(&m_layout); }
    ChannelLayout(const ChannelLayout&) = delete;
    ChannelLayout& operator=(const ChannelLayout&) = delete;

    void assign(const AVChannelLayout& layout) { av_channel_layout_copy(&m_layout, &layout); }
    [[nodiscard]] AVChannelLayout* get() { return &m_layout; }

private:
    AVChannelLayout m_layout{};
};

/// Options for the calls that take and shrink a dictionary.
class Options {
public:
    Options() = default;
    ~Options() { av_dict_free(&m_options); }
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;

    void set(const char* key, const std::string& value) { av_dict_set(&m_options, key, value.c_str(), 0); }
    [[nodiscard]] AVDictionary** get() { return &m_options; }

private:
    AVDictionary* m_options = nullptr;
};

/// What the libraries call an error, such as "No space left on device".
[[nodiscard]] std::string errorText(int error);

/// As the libraries take the name of a local file: never read as another protocol, whatever characters it
/// has.
[[nodiscard]] std::string fileUrl(const std::string& path);

} // namespace Export::Libav
