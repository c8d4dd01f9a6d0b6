// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/PictureDecoding.h>
#include <Roamly/Platform/ProcessSetup.h>

namespace Platform {

namespace {

/// Prepares with the first picture, not before.
class PreparedDecoding final : public PhotoSources::PhotoDecoding {
public:
    [[nodiscard]] std::optional<Foundation::Image> decode(const std::filesystem::path& file,
                                                          int maxPixel) const override {
        preparePictures();
        return m_decoding->decode(file, maxPixel);
    }

private:
    std::shared_ptr<const PhotoSources::PhotoDecoding> m_decoding = PhotoSources::decodingInProcess();
};

} // namespace

std::shared_ptr<const PhotoSources::PhotoDecoding> pictureDecoding() {
    static const auto decoding = std::make_shared<const PreparedDecoding>();
    return decoding;
}

} // namespace Platform
