#include <PhotoSources/ImageDecoder.h>

#include <vips/vips.h>

#include <fcntl.h>
#include <memory>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

namespace PhotoSources::ImageDecoder {

namespace {

bool vipsIsReady() {
    static std::once_flag once;
    static bool ready = false;
    std::call_once(once, [] {
        // Broken photos are ordinary here; what libvips thinks of them must not reach the terminal.
        g_log_set_handler(
            "VIPS", static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK & ~G_LOG_LEVEL_ERROR),
            [](const gchar*, GLogLevelFlags, const gchar*, gpointer) {}, nullptr);
        ready = vips_init("roamly") == 0;
        vips_cache_set_max(0);
        vips_concurrency_set(1);
    });
    return ready;
}

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};

} // namespace

std::optional<Foundation::Image> decode(const std::filesystem::path& file, int maxPixel) {
    if (maxPixel < 1 || !vipsIsReady())
        return std::nullopt;
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return std::nullopt;
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        return std::nullopt;
    }
    const std::unique_ptr<VipsSource, Unref> source(vips_source_new_from_descriptor(descriptor));
    ::close(descriptor);
    VipsImage* made = nullptr;
    if (!source || vips_thumbnail_source(source.get(), &made, maxPixel, "height", maxPixel, "size",
                                         VIPS_SIZE_DOWN, "export_profile", "srgb", nullptr) != 0) {
        vips_error_clear();
        return std::nullopt;
    }
    std::unique_ptr<VipsImage, Unref> picture(made);
    if (vips_image_hasalpha(picture.get())) {
        if (vips_flatten(picture.get(), &made, nullptr) != 0) {
            vips_error_clear();
            return std::nullopt;
        }
        picture.reset(made);
    }
    if (vips_colourspace(picture.get(), &made, VIPS_INTERPRETATION_sRGB, nullptr) != 0) {
        vips_error_clear();
        return std::nullopt;
    }
    picture.reset(made);
    std::size_t size = 0;
    const std::unique_ptr<void, decltype(&g_free)> bytes(vips_image_write_to_memory(picture.get(), &size),
                                                         &g_free);
    Foundation::Image result{vips_image_get_width(picture.get()), vips_image_get_height(picture.get()), {}};
    const std::size_t expected =
        static_cast<std::size_t>(result.width) * static_cast<std::size_t>(result.height) * 3;
    if (!bytes || size != expected) {
        vips_error_clear();
        return std::nullopt;
    }
    const auto* first = static_cast<const std::uint8_t*>(bytes.get());
    result.pixels.assign(first, first + size);
    return result;
}

} // namespace PhotoSources::ImageDecoder
