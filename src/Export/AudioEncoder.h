// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Export/Libav.h>
#include <Export/StereoBuffer.h>

#include <cstdint>
#include <functional>

namespace Export {

/// Compresses sound to AAC LC, 44.1 kHz stereo, 128 kbit/s.
class AudioEncoder {
public:
    /// Gets each compressed packet, its times in samples; the first ones lie before 0 (the encoder's
    /// priming).
    using PacketSink = std::function<void(AVPacket&)>;

    /// Throws ExportError (writerSetupFailed).
    explicit AudioEncoder(PacketSink sink);

    /// The next 1024 samples. Throws ExportError (appendFailed) and what the sink throws.
    void encode(const StereoBuffer& buffer);

    /// After the last buffer: hands the sink what the encoder still holds.
    void finish();

    [[nodiscard]] const AVCodecContext& context() const { return *m_context; }

private:
    void send(const AVFrame* frame);

    PacketSink m_sink;
    Libav::CodecContext m_context;
    Libav::Packet m_packet;
    std::int64_t m_position = 0;
};

} // namespace Export
