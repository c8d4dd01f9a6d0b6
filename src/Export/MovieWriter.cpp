// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/MovieWriter.h>

#include <new>
#include <numeric>
#include <string>
#include <utility>

namespace Export {

namespace {

constexpr int videoStream = 0;
constexpr int soundStream = 1;

AVFormatContext* makeOutput() {
    AVFormatContext* output = nullptr;
    if (avformat_alloc_output_context2(&output, nullptr, "mov", nullptr) < 0 || !output)
        throw ExportError(ExportError::Kind::writerSetupFailed, "FFmpeg was built without QuickTime movies");
    return output;
}

} // namespace

void MovieWriter::CloseOutput::operator()(AVFormatContext* output) const {
    avio_closep(&output->pb);
    avformat_free_context(output);
}

MovieWriter::MovieWriter(const PendingFile& file, const MovieFormat& format, bool wantsSound)
    : m_file(file)
    , m_output(makeOutput())
    , m_video(format.size, format.codec, format.fps,
              [this](AVPacket& packet) { write(packet, m_video.context().time_base, videoStream); }) {
    // Without an encoder for its sound a movie is still worth having.
    if (wantsSound && avcodec_find_encoder(AV_CODEC_ID_AAC)) {
        m_sound.emplace(
            [this](AVPacket& packet) { write(packet, m_sound->context().time_base, soundStream); });
    }
    begin(format);
}

MovieWriter::~MovieWriter() = default;

AVStream& MovieWriter::addStream(const AVCodecContext& encoder) {
    AVStream* stream = avformat_new_stream(m_output.get(), nullptr);
    if (!stream || avcodec_parameters_from_context(stream->codecpar, &encoder) < 0)
        throw std::bad_alloc();
    stream->time_base = encoder.time_base;
    return *stream;
}

void MovieWriter::begin(const MovieFormat& format) {
    AVStream& video = addStream(m_video.context());
    video.avg_frame_rate = m_video.context().framerate;
    video.r_frame_rate = m_video.context().framerate;
    video.sample_aspect_ratio = m_video.context().sample_aspect_ratio;
    video.codecpar->codec_tag =
        format.codec == ExportCodec::h264 ? MKTAG('a', 'v', 'c', '1') : MKTAG('h', 'v', 'c', '1');
    if (m_sound)
        addStream(m_sound->context());

    // The muxer reads the file back by this name when it moves the index to the front.
    const std::string url = Libav::fileUrl(m_file.path().string());
    m_output->url = av_strdup(url.c_str());
    int result = avio_open(&m_output->pb, url.c_str(), AVIO_FLAG_WRITE);
    if (result >= 0) {
        Libav::Options options;
        options.set("movflags", "faststart");
        // Both tracks last a whole number of these.
        options.set("movie_timescale", std::to_string(std::lcm(audioSampleRate, format.fps)));
        result = avformat_write_header(m_output.get(), options.get());
    }
    if (result < 0)
        throw failure(ExportError::Kind::writerSetupFailed, result);
}

void MovieWriter::addFrame(std::shared_ptr<const Frames::YuvFrame> frame) {
    m_video.encode(std::move(frame));
}

void MovieWriter::addSound(const StereoBuffer& buffer) {
    m_sound->encode(buffer);
}

void MovieWriter::finish(const std::function<void()>& checkpoint) {
    if (m_sound)
        m_sound->finish();
    do
        checkpoint();
    while (m_video.drain());

    int result = av_write_trailer(m_output.get());
    if (result >= 0)
        result = m_output->pb->error;
    const int closed = avio_closep(&m_output->pb);
    if (result >= 0)
        result = closed;
    if (result < 0)
        throw failure(ExportError::Kind::writerFailed, result);
}

void MovieWriter::write(AVPacket& packet, const AVRational& timeBase, int stream) {
    packet.stream_index = stream;
    av_packet_rescale_ts(&packet, timeBase, m_output->streams[stream]->time_base);
    const int result = av_interleaved_write_frame(m_output.get(), &packet);
    if (result < 0)
        throw failure(ExportError::Kind::writerFailed, result);
}

ExportError MovieWriter::failure(ExportError::Kind kind, int error) const {
    return ExportError(kind, m_file.target().string() + ": " + Libav::errorText(error));
}

} // namespace Export
