// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/AudioEncoder.h>
#include <Export/ExportError.h>

#include <new>
#include <utility>

namespace Export {

namespace {

constexpr std::int64_t bitRate = 128000;

Libav::CodecContext openEncoder() {
    const AVCodec* encoder = avcodec_find_encoder(AV_CODEC_ID_AAC);
    if (!encoder)
        throw ExportError(ExportError::Kind::writerSetupFailed, "FFmpeg was built without an AAC encoder");
    Libav::CodecContext context(avcodec_alloc_context3(encoder));
    if (!context)
        throw std::bad_alloc();
    context->sample_fmt = AV_SAMPLE_FMT_FLTP;
    context->sample_rate = audioSampleRate;
    context->time_base = {1, audioSampleRate};
    context->ch_layout = AV_CHANNEL_LAYOUT_STEREO;
    context->bit_rate = bitRate;
    context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    const int opened = avcodec_open2(context.get(), encoder, nullptr);
    if (opened < 0)
        throw ExportError(ExportError::Kind::writerSetupFailed, "AAC encoder: " + Libav::errorText(opened));
    return context;
}

} // namespace

AudioEncoder::AudioEncoder(PacketSink sink)
    : m_sink(std::move(sink))
    , m_context(openEncoder())
    , m_packet(Libav::makePacket()) {}

void AudioEncoder::encode(const StereoBuffer& buffer) {
    const Libav::Frame frame = Libav::makeFrame();
    frame->format = m_context->sample_fmt;
    frame->sample_rate = m_context->sample_rate;
    frame->ch_layout = AV_CHANNEL_LAYOUT_STEREO;
    frame->nb_samples = static_cast<int>(buffer.size());
    frame->pts = m_position;
    if (av_frame_get_buffer(frame.get(), 0) < 0)
        throw std::bad_alloc();
    auto* left = reinterpret_cast<float*>(frame->data[0]);
    auto* right = reinterpret_cast<float*>(frame->data[1]);
    for (const StereoSample& sample : buffer) {
        *left++ = sample.left;
        *right++ = sample.right;
    }
    m_position += frame->nb_samples;
    send(frame.get());
}

void AudioEncoder::finish() {
    send(nullptr);
}

void AudioEncoder::send(const AVFrame* frame) {
    const int sent = avcodec_send_frame(m_context.get(), frame);
    if (sent < 0)
        throw ExportError(ExportError::Kind::appendFailed, "AAC encoder: " + Libav::errorText(sent));
    while (true) {
        const int received = avcodec_receive_packet(m_context.get(), m_packet.get());
        if (received == AVERROR(EAGAIN) || received == AVERROR_EOF)
            return;
        if (received < 0)
            throw ExportError(ExportError::Kind::appendFailed, "AAC encoder: " + Libav::errorText(received));
        m_sink(*m_packet);
        av_packet_unref(m_packet.get());
    }
}

} // namespace Export
