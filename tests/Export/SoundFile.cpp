// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SoundFile.h"

#include <Export/Libav.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <numbers>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

namespace Libav = Export::Libav;

void require(bool condition, const std::string& what) {
    if (!condition)
        throw std::runtime_error("writing sound: " + what);
}

struct CloseOutput {
    void operator()(AVFormatContext* output) const {
        avio_closep(&output->pb);
        avformat_free_context(output);
    }
};

using Output = std::unique_ptr<AVFormatContext, CloseOutput>;

/// Nothing when the encoder does not take samples of that format.
Libav::CodecContext openEncoder(const SoundFile& sound, const AVFormatContext& output,
                                AVSampleFormat format) {
    const AVCodec* codec = avcodec_find_encoder_by_name(sound.codec.c_str());
    require(codec, "no encoder " + sound.codec);
    Libav::CodecContext encoder(avcodec_alloc_context3(codec));
    encoder->sample_fmt = format;
    encoder->sample_rate = sound.sampleRate;
    encoder->time_base = {1, sound.sampleRate};
    if (sound.hasNamedChannels)
        av_channel_layout_default(&encoder->ch_layout, sound.channels);
    else {
        encoder->ch_layout.order = AV_CHANNEL_ORDER_UNSPEC;
        encoder->ch_layout.nb_channels = sound.channels;
    }
    if (output.oformat->flags & AVFMT_GLOBALHEADER)
        encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    encoder->strict_std_compliance = FF_COMPLIANCE_EXPERIMENTAL;
    return avcodec_open2(encoder.get(), codec, nullptr) < 0 ? nullptr : std::move(encoder);
}

/// With the finest samples that it takes.
Libav::CodecContext openEncoder(const SoundFile& sound, const AVFormatContext& output) {
    for (const AVSampleFormat format :
         {AV_SAMPLE_FMT_FLT, AV_SAMPLE_FMT_FLTP, AV_SAMPLE_FMT_S32, AV_SAMPLE_FMT_S32P, AV_SAMPLE_FMT_S16,
          AV_SAMPLE_FMT_S16P, AV_SAMPLE_FMT_U8}) {
        if (Libav::CodecContext encoder = openEncoder(sound, output, format))
            return encoder;
    }
    throw std::runtime_error("writing sound: open " + sound.codec);
}

void store(AVFrame& frame, int index, int channel, double value) {
    const auto format = static_cast<AVSampleFormat>(frame.format);
    const bool isPlanar = av_sample_fmt_is_planar(format) != 0;
    std::uint8_t* data = isPlanar ? frame.extended_data[channel] : frame.extended_data[0];
    const int at = isPlanar ? index : index * frame.ch_layout.nb_channels + channel;
    switch (av_get_packed_sample_fmt(format)) {
    case AV_SAMPLE_FMT_U8:
        data[at] = static_cast<std::uint8_t>(128 + std::lround(value * 127));
        break;
    case AV_SAMPLE_FMT_S16:
        reinterpret_cast<std::int16_t*>(data)[at] = static_cast<std::int16_t>(std::lround(value * 32767));
        break;
    case AV_SAMPLE_FMT_S32:
        reinterpret_cast<std::int32_t*>(data)[at] =
            static_cast<std::int32_t>(std::llround(value * 2147483647));
        break;
    case AV_SAMPLE_FMT_FLT:
        reinterpret_cast<float*>(data)[at] = static_cast<float>(value);
        break;
    default:
        throw std::runtime_error("writing sound: sample format");
    }
}

/// A one-pixel PNG.
constexpr std::array<std::uint8_t, 67> coverBytes{
    0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48, 0x44, 0x52, 0x00,
    0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x00, 0x00, 0x00, 0x00, 0x3A, 0x7E, 0x9B, 0x55, 0x00,
    0x00, 0x00, 0x0A, 0x49, 0x44, 0x41, 0x54, 0x78, 0xDA, 0x63, 0x60, 0x00, 0x00, 0x00, 0x02, 0x00, 0x01,
    0xE5, 0x27, 0xDE, 0xFC, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82};

void addCoverStream(AVFormatContext& output) {
    AVStream* stream = avformat_new_stream(&output, nullptr);
    stream->codecpar->codec_type = AVMEDIA_TYPE_VIDEO;
    stream->codecpar->codec_id = AV_CODEC_ID_PNG;
    stream->codecpar->width = 1;
    stream->codecpar->height = 1;
    stream->disposition = AV_DISPOSITION_ATTACHED_PIC;
}

} // namespace

void writeSound(const std::filesystem::path& file, const SoundFile& sound) {
    AVFormatContext* raw = nullptr;
    require(avformat_alloc_output_context2(&raw, nullptr, sound.container.c_str(), nullptr) >= 0,
            "container");
    const Output output(raw);
    const Libav::CodecContext encoder = openEncoder(sound, *output);
    AVStream* stream = avformat_new_stream(raw, nullptr);
    avcodec_parameters_from_context(stream->codecpar, encoder.get());
    stream->time_base = encoder->time_base;
    if (sound.hasCover)
        addCoverStream(*output);
    require(avio_open(&output->pb, ("file:" + file.string()).c_str(), AVIO_FLAG_WRITE) >= 0, "open file");
    require(avformat_write_header(raw, nullptr) >= 0, "header");

    const Libav::Packet packet = Libav::makePacket();
    if (sound.hasCover) {
        require(av_new_packet(packet.get(), static_cast<int>(coverBytes.size())) >= 0, "cover");
        std::copy(coverBytes.begin(), coverBytes.end(), packet->data);
        packet->stream_index = 1;
        packet->pts = packet->dts = 0;
        packet->flags |= AV_PKT_FLAG_KEY;
        require(av_interleaved_write_frame(raw, packet.get()) >= 0, "cover");
    }
    const auto send = [&](const AVFrame* frame) {
        require(avcodec_send_frame(encoder.get(), frame) >= 0, "encode");
        while (avcodec_receive_packet(encoder.get(), packet.get()) >= 0) {
            packet->stream_index = 0;
            av_packet_rescale_ts(packet.get(), encoder->time_base, stream->time_base);
            require(av_interleaved_write_frame(raw, packet.get()) >= 0, "write");
        }
    };
    const int step = encoder->frame_size > 0 ? encoder->frame_size : 4096;
    for (int start = 0; start < sound.length; start += step) {
        const Libav::Frame frame = Libav::makeFrame();
        frame->format = encoder->sample_fmt;
        frame->sample_rate = encoder->sample_rate;
        av_channel_layout_copy(&frame->ch_layout, &encoder->ch_layout);
        frame->nb_samples = std::min(step, sound.length - start);
        frame->pts = start;
        require(av_frame_get_buffer(frame.get(), 0) >= 0, "buffer");
        for (int i = 0; i < frame->nb_samples; ++i) {
            for (int channel = 0; channel < sound.channels; ++channel)
                store(*frame, i, channel, sound.sample(start + i, channel));
        }
        send(frame.get());
    }
    send(nullptr);
    require(av_write_trailer(raw) >= 0, "trailer");
}

double sine(double frequency, int index, int sampleRate) {
    return std::sin(2 * std::numbers::pi * frequency * index / sampleRate);
}
