// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Export/AudioEncoder.h>
#include <Export/ExportError.h>
#include <Export/ExportPreset.h>
#include <Export/Libav.h>
#include <Export/PendingFile.h>
#include <Export/StereoBuffer.h>
#include <Export/VideoEncoder.h>
#include <Frames/YuvFrame.h>

#include <functional>
#include <memory>
#include <optional>

namespace Export {

/// What the pictures of a movie are.
struct MovieFormat {
    Frames::FrameSize size;
    ExportCodec codec = ExportCodec::h264;
    int fps = 30;
};

/// Compresses frames and sound and interleaves them in a QuickTime file whose index stands at its front. Both
/// tracks begin at time 0; frame i is shown at i / fps. To be fed in step: what one track is ahead of the
/// other waits in memory, compressed.
class MovieWriter {
public:
    /// Begins the file. Throws ExportError (writerSetupFailed). The file is borrowed.
    MovieWriter(const PendingFile& file, const MovieFormat& format, bool wantsSound);
    ~MovieWriter();
    MovieWriter(const MovieWriter&) = delete;
    MovieWriter& operator=(const MovieWriter&) = delete;

    /// False when sound was asked for and there is no encoder for it.
    [[nodiscard]] bool hasSound() const { return m_sound.has_value(); }

    /// Both throw ExportError (pixelBufferPoolUnavailable, appendFailed, writerFailed).
    void addFrame(std::shared_ptr<const Frames::YuvFrame> frame);
    void addSound(const StereoBuffer& buffer);

    /// Completes and closes the file. `checkpoint` is called every now and then and may throw. Throws
    /// ExportError (appendFailed, writerFailed).
    void finish(const std::function<void()>& checkpoint);

private:
    struct CloseOutput {
        void operator()(AVFormatContext* output) const;
    };

    AVStream& addStream(const AVCodecContext& encoder);
    void begin(const MovieFormat& format);
    void write(AVPacket& packet, const AVRational& timeBase, int stream);
    [[nodiscard]] ExportError failure(ExportError::Kind kind, int error) const;

    const PendingFile& m_file;
    std::unique_ptr<AVFormatContext, CloseOutput> m_output;
    VideoEncoder m_video;
    std::optional<AudioEncoder> m_sound;
};

} // namespace Export
