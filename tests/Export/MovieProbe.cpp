// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "MovieProbe.h"

#include <Export/Libav.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <stdexcept>

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace {

namespace Libav = Export::Libav;

void require(bool condition, const char* what) {
    if (!condition)
        throw std::runtime_error(what);
}

std::string tagText(std::uint32_t tag) {
    std::string text;
    for (int shift = 0; shift < 32; shift += 8)
        text += static_cast<char>(tag >> shift & 0xFF);
    return text;
}

double seconds(std::int64_t time, AVRational base) {
    return static_cast<double>(time) * av_q2d(base);
}

void readBoxes(const std::filesystem::path& file, ProbedMovie& movie) {
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    const auto number = [&](std::size_t at, int width) {
        std::uint64_t value = 0;
        for (int i = 0; i < width; ++i)
            value = value << 8 | static_cast<unsigned char>(bytes.at(at + static_cast<std::size_t>(i)));
        return value;
    };
    std::size_t at = 0;
    while (at + 8 <= bytes.size()) {
        std::uint64_t size = number(at, 4);
        const std::string type = bytes.substr(at + 4, 4);
        if (size == 1)
            size = number(at + 8, 8);
        movie.boxes.push_back(type);
        if (type == "ftyp")
            movie.brand = bytes.substr(at + 8, 4);
        if (type == "moov") {
            const std::size_t colour = bytes.substr(at, size).find("colr");
            if (colour != std::string::npos)
                movie.colourBox = bytes.substr(at + colour + 4, number(at + colour - 4, 4) - 8);
        }
        require(size >= 8, "a box is too small");
        at += size;
    }
    require(at == bytes.size(), "the last box does not end with the file");
}

double meanLuma(const AVFrame& frame) {
    double sum = 0;
    for (int y = 0; y < frame.height; ++y) {
        for (int x = 0; x < frame.width; ++x)
            sum += frame.data[0][y * frame.linesize[0] + x];
    }
    return sum / (static_cast<double>(frame.width) * frame.height);
}

} // namespace

ProbedMovie probeMovie(const std::filesystem::path& file) {
    ProbedMovie movie;
    readBoxes(file, movie);

    AVFormatContext* opened = nullptr;
    require(avformat_open_input(&opened, ("file:" + file.string()).c_str(), nullptr, nullptr) >= 0, "open");
    const auto close = [](AVFormatContext* context) { avformat_close_input(&context); };
    const std::unique_ptr<AVFormatContext, decltype(close)> input(opened, close);
    require(avformat_find_stream_info(opened, nullptr) >= 0, "stream info");
    movie.duration = static_cast<double>(input->duration) / AV_TIME_BASE;

    std::vector<Libav::CodecContext> decoders;
    std::map<int, ProbedVideo> video;
    std::map<int, ProbedSound> sound;
    for (unsigned i = 0; i < input->nb_streams; ++i) {
        const AVStream& stream = *input->streams[i];
        const AVCodecParameters& codec = *stream.codecpar;
        Libav::CodecContext decoder(avcodec_alloc_context3(avcodec_find_decoder(codec.codec_id)));
        avcodec_parameters_to_context(decoder.get(), &codec);
        decoder->pkt_timebase = stream.time_base;
        require(avcodec_open2(decoder.get(), nullptr, nullptr) >= 0, "decoder");
        decoders.push_back(std::move(decoder));
        if (codec.codec_type == AVMEDIA_TYPE_VIDEO) {
            ProbedVideo& track = video[stream.index];
            track.tag = tagText(codec.codec_tag);
            track.pixelFormat = av_get_pix_fmt_name(static_cast<AVPixelFormat>(codec.format));
            track.profile = codec.profile;
            track.width = codec.width;
            track.height = codec.height;
            track.primaries = codec.color_primaries;
            track.transfer = codec.color_trc;
            track.matrix = codec.color_space;
            track.range = codec.color_range;
            track.start = seconds(stream.start_time, stream.time_base);
            track.duration = seconds(stream.duration, stream.time_base);
            track.frameRate = av_q2d(stream.avg_frame_rate);
        } else if (codec.codec_type == AVMEDIA_TYPE_AUDIO) {
            ProbedSound& track = sound[stream.index];
            track.codec = avcodec_get_name(codec.codec_id);
            track.profile = codec.profile;
            track.sampleRate = codec.sample_rate;
            track.channels = codec.ch_layout.nb_channels;
            track.bitRate = codec.bit_rate;
            track.start = seconds(stream.start_time, stream.time_base);
            track.duration = seconds(stream.duration, stream.time_base);
        }
    }

    const Libav::Packet packet = Libav::makePacket();
    const Libav::Frame frame = Libav::makeFrame();
    const auto decode = [&](int index, const AVPacket* data) {
        AVCodecContext* decoder = decoders[static_cast<std::size_t>(index)].get();
        require(avcodec_send_packet(decoder, data) >= 0, "send packet");
        while (avcodec_receive_frame(decoder, frame.get()) >= 0) {
            if (video.contains(index)) {
                video[index].lumas.push_back(meanLuma(*frame));
            } else {
                const auto* left = reinterpret_cast<const float*>(frame->data[0]);
                const auto* right = reinterpret_cast<const float*>(frame->data[1]);
                for (int i = 0; i < frame->nb_samples; ++i)
                    sound[index].samples.push_back({left[i], right[i]});
            }
            av_frame_unref(frame.get());
        }
    };
    std::map<std::int64_t, std::int64_t> picturePositions;
    std::vector<std::pair<std::int64_t, std::int64_t>> soundPositions;
    while (av_read_frame(input.get(), packet.get()) >= 0) {
        const int index = packet->stream_index;
        const AVRational base = input->streams[index]->time_base;
        if (video.contains(index)) {
            const AVRational tick{1, 30};
            const std::int64_t time = av_rescale_q(packet->pts, base, tick);
            const bool isWhole = av_compare_ts(packet->pts, base, time, tick) == 0;
            video[index].times.push_back(isWhole ? time : -1);
            video[index].keyFrames += (packet->flags & AV_PKT_FLAG_KEY) != 0;
            picturePositions[av_rescale_q(packet->dts, base, {1, 1000})] = packet->pos;
        } else {
            soundPositions.emplace_back(av_rescale_q(packet->dts, base, {1, 1000}), packet->pos);
        }
        decode(index, packet.get());
        av_packet_unref(packet.get());
    }
    for (std::size_t i = 0; i < decoders.size(); ++i)
        decode(static_cast<int>(i), nullptr);

    for (auto& [index, track] : video) {
        std::sort(track.times.begin(), track.times.end());
        movie.video.push_back(track);
    }
    for (auto& [index, track] : sound) {
        for (const auto& [time, position] : soundPositions) {
            auto picture = picturePositions.lower_bound(time);
            if (picture == picturePositions.end())
                continue;
            track.farthestFromPictures =
                std::max(track.farthestFromPictures, std::abs(picture->second - position));
        }
        movie.sound.push_back(track);
    }
    return movie;
}

double level(const std::vector<Export::StereoSample>& samples, double time, double halfWidth, bool right) {
    const auto first = static_cast<std::size_t>(std::lround((time - halfWidth) * Export::audioSampleRate));
    const auto last = static_cast<std::size_t>(std::lround((time + halfWidth) * Export::audioSampleRate));
    double sum = 0;
    for (std::size_t i = first; i < last; ++i) {
        const double sample = right ? samples.at(i).right : samples.at(i).left;
        sum += sample * sample;
    }
    return std::sqrt(sum / static_cast<double>(last - first));
}
