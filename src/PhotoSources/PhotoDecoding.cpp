// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/ImageDecoder.h>
#include <PhotoSources/PhotoDecoding.h>

namespace PhotoSources {

namespace {

class InProcess final : public PhotoDecoding {
public:
    [[nodiscard]] std::optional<Foundation::Image> decode(const std::filesystem::path& file,
                                                          int maxPixel) const override {
        return ImageDecoder::decode(file, maxPixel);
    }
};

} // namespace

std::shared_ptr<const PhotoDecoding> decodingInProcess() {
    return std::make_shared<InProcess>();
}

} // namespace PhotoSources
