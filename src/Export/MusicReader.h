// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Export/Libav.h>
#include <Export/StereoBuffer.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

namespace Export {

/// Reads the first audio track of a file once, from its beginning to its end, as 44.1 kHz stereo, whatever it
/// was recorded as. Only a piece of the file is in memory at a time.
class MusicReader {
public:
    /// Throws ExportError (appendFailed) when the file cannot be opened as sound. After `stop` is requested
    /// the file seems to end early.
    MusicReader(std::filesystem::path file, std::stop_token stop);

    /// Appends the next piece, which may be empty. False when the file has ended; damaged parts are skipped.
    [[nodiscard]] bool read(std::vector<StereoSample>& samples);

private:
    struct CloseInput {
        void operator()(AVFormatContext* input) const { avformat_close_input(&input); }
    };

    void openInput();
    void openDecoder();
    [[noreturn]] void fail(const std::string& reason) const;
    void feedDecoder();
    /// Cuts the silence that an encoder added to fill its last packet.
    void cutEnd();
    void resample(const AVFrame& frame, std::vector<StereoSample>& samples);
    void flushResampler(std::vector<StereoSample>& samples);
    /// Runs the resampler over `count` samples a channel; none (null) asks for what it holds back.
    int convert(const std::uint8_t** data, int count, std::vector<StereoSample>& samples);

    std::filesystem::path m_file;
    /// On the heap because the input keeps its address.
    std::unique_ptr<std::stop_token> m_stop;
    std::unique_ptr<AVFormatContext, CloseInput> m_input;
    int m_stream = -1;
    Libav::CodecContext m_decoder;
    Libav::Packet m_packet;
    /// How long the last packet is to be heard, in the stream's time base.
    std::int64_t m_packetDuration = 0;
    Libav::Frame m_frame;
    /// The last decoded frame, not resampled yet: the last of all may have to be cut.
    Libav::Frame m_held;
    /// For sound of the kind that `m_layout`, `m_format` and `m_rate` tell; made when the first sound comes.
    Libav::Resampler m_resampler;
    Libav::ChannelLayout m_layout;
    int m_format = -1;
    int m_rate = 0;
    bool m_isDraining = false;
};

} // namespace Export
