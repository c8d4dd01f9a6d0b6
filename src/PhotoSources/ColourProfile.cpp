// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/ColourProfile.h>

#include <lcms2.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

namespace PhotoSources::ColourProfile {

namespace {

struct Primaries {
    cmsCIExyY white;
    cmsCIExyYTRIPLE rgb;
};

constexpr cmsCIExyY d65{0.3127, 0.3290, 1.0};

std::optional<Primaries> primariesOf(int code) {
    switch (code) {
    case 1:
        return Primaries{d65, {{0.640, 0.330, 1.0}, {0.300, 0.600, 1.0}, {0.150, 0.060, 1.0}}};
    case 4:
        return Primaries{{0.310, 0.316, 1.0}, {{0.67, 0.33, 1.0}, {0.21, 0.71, 1.0}, {0.14, 0.08, 1.0}}};
    case 5:
        return Primaries{d65, {{0.64, 0.33, 1.0}, {0.29, 0.60, 1.0}, {0.15, 0.06, 1.0}}};
    case 6:
    case 7:
        return Primaries{d65, {{0.630, 0.340, 1.0}, {0.310, 0.595, 1.0}, {0.155, 0.070, 1.0}}};
    case 9:
        return Primaries{d65, {{0.708, 0.292, 1.0}, {0.170, 0.797, 1.0}, {0.131, 0.046, 1.0}}};
    case 11:
        return Primaries{{0.314, 0.351, 1.0},
                         {{0.680, 0.320, 1.0}, {0.265, 0.690, 1.0}, {0.150, 0.060, 1.0}}};
    case 12:
        return Primaries{d65, {{0.680, 0.320, 1.0}, {0.265, 0.690, 1.0}, {0.150, 0.060, 1.0}}};
    default:
        return std::nullopt;
    }
}

enum class Transfer { sRgb, linear, gamma22, gamma28, pq, hlg };

Transfer transferOf(int code) {
    switch (code) {
    case 4:
        return Transfer::gamma22;
    case 5:
        return Transfer::gamma28;
    case 8:
        return Transfer::linear;
    case 16:
        return Transfer::pq;
    case 18:
        return Transfer::hlg;
    default:
        // BT.709 and its kin describe cameras, not displays; pictures so tagged are shown as sRGB everywhere.
        return Transfer::sRgb;
    }
}

/// Light of a PQ sample (SMPTE ST 2084) in multiples of diffuse white, which BT.2408 puts at 203 cd/m².
double pqLight(double sample) {
    constexpr double m1 = 2610.0 / 16384, m2 = 2523.0 / 4096 * 128;
    constexpr double c1 = 3424.0 / 4096, c2 = 2413.0 / 4096 * 32, c3 = 2392.0 / 4096 * 32;
    const double root = std::pow(sample, 1 / m2);
    return 10000.0 / 203.0 * std::pow(std::max(root - c1, 0.0) / (c2 - c3 * root), 1 / m1);
}

/// Light of an HLG sample (ARIB STD-B67, BT.2100) on a 1000 cd/m² display, in multiples of diffuse white. The
/// system gamma is applied to each channel, which shifts colours a little and needs no luminance.
double hlgLight(double sample) {
    constexpr double a = 0.17883277, b = 0.28466892, c = 0.55991073;
    const double scene = sample <= 0.5 ? sample * sample / 3 : (std::exp((sample - c) / a) + b) / 12;
    return 1000.0 / 203.0 * std::pow(scene, 1.2);
}

/// Leaves light up to the knee alone and bends what is above it towards 1, which the brightest input reaches.
double toneMapped(double light, double brightest) {
    constexpr double knee = 0.7;
    if (light <= knee)
        return light;
    const double reach = brightest - knee, room = 1 - knee;
    const double x = std::min(light, brightest) - knee;
    // Slope 1 at the knee; x = reach gives the whole room.
    const double k = 1 / room - 1 / reach;
    return knee + x / (1 + k * x);
}

using Curve = std::unique_ptr<cmsToneCurve, decltype(&cmsFreeToneCurve)>;

Curve curveOf(cmsContext context, Transfer transfer) {
    const auto table = [&](auto light, double brightest) {
        std::array<cmsFloat32Number, 4096> values{};
        for (std::size_t i = 0; i < values.size(); ++i) {
            const double sample = static_cast<double>(i) / (values.size() - 1);
            values[i] = static_cast<cmsFloat32Number>(toneMapped(light(sample), brightest));
        }
        return cmsBuildTabulatedToneCurveFloat(context, values.size(), values.data());
    };
    cmsToneCurve* curve = nullptr;
    switch (transfer) {
    case Transfer::linear:
        curve = cmsBuildGamma(context, 1.0);
        break;
    case Transfer::gamma22:
        curve = cmsBuildGamma(context, 2.2);
        break;
    case Transfer::gamma28:
        curve = cmsBuildGamma(context, 2.8);
        break;
    case Transfer::pq:
        // What masters use; brighter samples are rare and clip.
        curve = table(pqLight, 1000.0 / 203.0);
        break;
    case Transfer::hlg:
        curve = table(hlgLight, 1000.0 / 203.0);
        break;
    case Transfer::sRgb: {
        const std::array<cmsFloat64Number, 5> parameters{2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
        curve = cmsBuildParametricToneCurve(context, 4, parameters.data());
        break;
    }
    }
    return {curve, &cmsFreeToneCurve};
}

Bytes written(cmsContext context, const Primaries& primaries, const Curve& curve) {
    if (!curve)
        return {};
    const std::array<cmsToneCurve*, 3> curves{curve.get(), curve.get(), curve.get()};
    const std::unique_ptr<void, decltype(&cmsCloseProfile)> profile(
        cmsCreateRGBProfileTHR(context, &primaries.white, &primaries.rgb, curves.data()), &cmsCloseProfile);
    cmsUInt32Number size = 0;
    if (!profile || !cmsSaveProfileToMem(profile.get(), nullptr, &size))
        return {};
    Bytes bytes(size);
    if (!cmsSaveProfileToMem(profile.get(), bytes.data(), &size))
        return {};
    return bytes;
}

} // namespace

std::optional<Bytes> forCoding(const ColourCoding& coding) {
    const Transfer transfer = transferOf(coding.transfer);
    std::optional<Primaries> primaries = primariesOf(coding.primaries);
    if (!primaries && transfer == Transfer::sRgb)
        return std::nullopt;
    if (coding.primaries == 1 && transfer == Transfer::sRgb)
        return std::nullopt;
    if (!primaries)
        primaries = primariesOf(1);
    Bytes bytes = written(nullptr, *primaries, curveOf(nullptr, transfer));
    if (bytes.empty())
        return std::nullopt;
    return bytes;
}

Bytes adobeRgb() {
    static const Bytes profile = [] {
        // Adobe RGB (1998): gamma 2 + 51/256.
        const Primaries primaries{d65, {{0.64, 0.33, 1.0}, {0.21, 0.71, 1.0}, {0.15, 0.06, 1.0}}};
        return written(nullptr, primaries, {cmsBuildGamma(nullptr, 563.0 / 256), &cmsFreeToneCurve});
    }();
    return profile;
}

std::optional<Bytes> toSrgb(std::span<const std::uint8_t> profile, int channels, int bitsPerChannel,
                            std::span<const std::uint8_t> samples) {
    const bool wide = bitsPerChannel == 16;
    cmsColorSpaceSignature space{};
    cmsUInt32Number format = 0;
    switch (channels) {
    case 1:
        space = cmsSigGrayData;
        format = wide ? TYPE_GRAY_16 : TYPE_GRAY_8;
        break;
    case 3:
        space = cmsSigRgbData;
        format = wide ? TYPE_RGB_16 : TYPE_RGB_8;
        break;
    case 4:
        space = cmsSigCmykData;
        format = wide ? TYPE_CMYK_16 : TYPE_CMYK_8;
        break;
    default:
        return std::nullopt;
    }
    // A context of its own keeps what a broken profile provokes to this call.
    const std::unique_ptr<std::remove_pointer_t<cmsContext>, decltype(&cmsDeleteContext)> context(
        cmsCreateContext(nullptr, nullptr), &cmsDeleteContext);
    using Profile = std::unique_ptr<void, decltype(&cmsCloseProfile)>;
    const Profile input(
        cmsOpenProfileFromMemTHR(context.get(), profile.data(), static_cast<cmsUInt32Number>(profile.size())),
        &cmsCloseProfile);
    if (!input || cmsGetColorSpace(input.get()) != space)
        return std::nullopt;
    const Profile output(cmsCreate_sRGBProfileTHR(context.get()), &cmsCloseProfile);
    // Joined into one table, 16-bit profiles would lose the precision that the samples were stored for.
    const cmsUInt32Number flags = cmsFLAGS_BLACKPOINTCOMPENSATION | (wide ? cmsFLAGS_NOOPTIMIZE : 0U);
    const std::unique_ptr<void, decltype(&cmsDeleteTransform)> transform(
        cmsCreateTransformTHR(context.get(), input.get(), format, output.get(), TYPE_RGB_8,
                              INTENT_RELATIVE_COLORIMETRIC, flags),
        &cmsDeleteTransform);
    if (!transform)
        return std::nullopt;
    const std::size_t pixels = samples.size() / static_cast<std::size_t>(channels * bitsPerChannel / 8);
    Bytes result(pixels * 3);
    cmsDoTransform(transform.get(), samples.data(), result.data(), static_cast<cmsUInt32Number>(pixels));
    return result;
}

} // namespace PhotoSources::ColourProfile
