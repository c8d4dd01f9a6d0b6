// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/ExportError.h>
#include <Export/MusicReader.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <new>
#include <string>
#include <string_view>
#include <utility>

extern "C" {
#include <libavutil/opt.h>
}

namespace Export {

namespace {

/// Sound at other rates than these is damaged; a file that claims one sample a second would fill the memory.
constexpr int lowestRate = 1000;
constexpr int highestRate = 1'000'000;

/// How many of the input's channels go into each of the two; nothing where the resampler knows better.
std::vector<double> ownMatrix(int channelCount, bool isKnown) {
    const auto channels = static_cast<std::size_t>(channelCount);
    // The resampler would take 3 dB off a single channel; both ears are to hear it as it is.
    if (channels == 1)
        return {1, 1};
    if (isKnown)
        return {};
    // Channels that nobody named: every other one to the left, the rest to the right, without clipping.
    std::vector<double> matrix(2 * channels, 0);
    const std::size_t left = (channels + 1) / 2;
    const double share = 1.0 / static_cast<double>(left);
    for (std::size_t channel = 0; channel < channels; ++channel)
        matrix[(channel % 2) * channels + channel] = share;
    return matrix;
}

/// Nothing when there is no way from that kind of sound to ours.
Libav::Resampler makeResampler(const AVFrame& frame) {
    if (frame.sample_rate < lowestRate || frame.sample_rate > highestRate)
        return nullptr;
    const int channels = frame.ch_layout.nb_channels;
    Libav::ChannelLayout layout(frame.ch_layout);
    if (layout.get()->order == AV_CHANNEL_ORDER_UNSPEC)
        av_channel_layout_default(layout.get(), channels);

    const auto attempt = [&](bool isKnown) -> Libav::Resampler {
        AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
        SwrContext* raw = nullptr;
        if (swr_alloc_set_opts2(&raw, &stereo, AV_SAMPLE_FMT_FLT, audioSampleRate, layout.get(),
                                static_cast<AVSampleFormat>(frame.format), frame.sample_rate, 0, nullptr) < 0)
            return nullptr;
        Libav::Resampler resampler(raw);
        // Mixing many channels down keeps within full scale.
        av_opt_set_double(raw, "rematrix_maxval", 1.0, 0);
        const std::vector<double> matrix = ownMatrix(channels, isKnown);
        if (!matrix.empty() && swr_set_matrix(raw, matrix.data(), channels) < 0)
            return nullptr;
        return swr_init(raw) < 0 ? nullptr : std::move(resampler);
    };
    Libav::Resampler resampler = attempt(true);
    return resampler ? std::move(resampler) : attempt(false);
}

} // namespace

MusicReader::MusicReader(std::filesystem::path file, std::stop_token stop)
    : m_file(std::move(file))
    , m_stop(std::make_unique<std::stop_token>(std::move(stop)))
    , m_packet(Libav::makePacket())
    , m_frame(Libav::makeFrame())
    , m_held(Libav::makeFrame()) {
    openInput();
    openDecoder();
}

void MusicReader::openInput() {
    std::error_code error;
    if (!std::filesystem::is_regular_file(m_file, error))
        fail(error ? error.message() : "not a file");

    AVFormatContext* input = avformat_alloc_context();
    if (!input)
        throw std::bad_alloc();
    input->interrupt_callback.opaque = m_stop.get();
    input->interrupt_callback.callback = [](void* stop) -> int {
        return static_cast<std::stop_token*>(stop)->stop_requested();
    };
    // A playlist is not allowed to lead anywhere but to files.
    Libav::Options options;
    options.set("protocol_whitelist", "file");
    // Frees the context when it fails.
    const int opened =
        avformat_open_input(&input, Libav::fileUrl(m_file.string()).c_str(), nullptr, options.get());
    if (opened < 0)
        fail(opened == AVERROR_INVALIDDATA || opened == AVERROR(EINVAL) ? "it is no music file"
                                                                        : Libav::errorText(opened));
    m_input.reset(input);

    const int probed = avformat_find_stream_info(input, nullptr);
    if (probed < 0)
        fail(Libav::errorText(probed));
    for (unsigned stream = 0; stream < input->nb_streams; ++stream) {
        const bool isSound = input->streams[stream]->codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
        if (isSound && m_stream < 0)
            m_stream = static_cast<int>(stream);
        else
            input->streams[stream]->discard = AVDISCARD_ALL;
    }
    if (m_stream < 0)
        fail("there is no audio track in it");
}

void MusicReader::openDecoder() {
    const AVStream& stream = *m_input->streams[m_stream];
    const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
    if (!codec)
        fail("its kind of sound cannot be decoded");
    m_decoder.reset(avcodec_alloc_context3(codec));
    if (!m_decoder)
        throw std::bad_alloc();
    int result = avcodec_parameters_to_context(m_decoder.get(), stream.codecpar);
    if (result >= 0) {
        // Lets the decoder cut the silence that encoders put before and after the music.
        m_decoder->pkt_timebase = stream.time_base;
        result = avcodec_open2(m_decoder.get(), codec, nullptr);
    }
    if (result < 0)
        fail(Libav::errorText(result));
}

void MusicReader::fail(const std::string& reason) const {
    // An interrupted file looks like a bad one.
    if (m_stop->stop_requested())
        throw ExportError(ExportError::Kind::cancelled);
    throw ExportError(ExportError::Kind::appendFailed, "music " + m_file.string() + ": " + reason);
}

bool MusicReader::read(std::vector<StereoSample>& samples) {
    while (true) {
        const int received = avcodec_receive_frame(m_decoder.get(), m_frame.get());
        if (received >= 0) {
            std::swap(m_frame, m_held);
            resample(*m_frame, samples);
            av_frame_unref(m_frame.get());
            return true;
        }
        // Any other error belongs to a damaged packet, and the next one may be sound.
        if (received == AVERROR_EOF || m_isDraining) {
            cutEnd();
            resample(*m_held, samples);
            av_frame_unref(m_held.get());
            flushResampler(samples);
            return false;
        }
        feedDecoder();
    }
}

void MusicReader::feedDecoder() {
    while (true) {
        const int result = av_read_frame(m_input.get(), m_packet.get());
        if (result < 0) {
            m_isDraining = true;
            avcodec_send_packet(m_decoder.get(), nullptr);
            return;
        }
        // An empty packet would tell the decoder that the file has ended.
        const bool isWanted = m_packet->stream_index == m_stream && m_packet->size > 0;
        if (isWanted) {
            m_packetDuration = m_packet->duration;
            avcodec_send_packet(m_decoder.get(), m_packet.get());
        }
        av_packet_unref(m_packet.get());
        if (isWanted)
            return;
    }
}

void MusicReader::cutEnd() {
    // Other containers than this one round durations, or tell the decoder itself what to cut.
    const bool isExact = std::string_view(m_input->iformat->name).starts_with("mov,");
    if (!isExact || m_decoder->codec_id != AV_CODEC_ID_AAC || m_held->sample_rate <= 0)
        return;
    const std::int64_t length =
        av_rescale_q(m_packetDuration, m_input->streams[m_stream]->time_base, {1, m_held->sample_rate});
    if (length > 0 && length < m_held->nb_samples)
        m_held->nb_samples = static_cast<int>(length);
}

void MusicReader::resample(const AVFrame& frame, std::vector<StereoSample>& samples) {
    if (frame.nb_samples <= 0)
        return;
    const bool isSameKind = m_resampler && frame.format == m_format && frame.sample_rate == m_rate &&
                            av_channel_layout_compare(&frame.ch_layout, m_layout.get()) == 0;
    if (!isSameKind) {
        flushResampler(samples);
        m_resampler = makeResampler(frame);
        m_format = frame.format;
        m_rate = frame.sample_rate;
        m_layout.assign(frame.ch_layout);
    }
    if (m_resampler)
        convert(const_cast<const std::uint8_t**>(frame.extended_data), frame.nb_samples, samples);
}

void MusicReader::flushResampler(std::vector<StereoSample>& samples) {
    while (m_resampler && convert(nullptr, 0, samples) > 0) {
    }
    m_resampler.reset();
}

int MusicReader::convert(const std::uint8_t** data, int count, std::vector<StereoSample>& samples) {
    const int expected = swr_get_out_samples(m_resampler.get(), count);
    if (expected <= 0)
        return 0;
    const std::size_t before = samples.size();
    samples.resize(before + static_cast<std::size_t>(expected));
    auto* out = reinterpret_cast<std::uint8_t*>(samples.data() + before);
    const int made = swr_convert(m_resampler.get(), &out, expected, data, count);
    samples.resize(before + static_cast<std::size_t>(std::max(made, 0)));
    return made;
}

} // namespace Export
