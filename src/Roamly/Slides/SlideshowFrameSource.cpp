// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Frames/Compositor.h>
#include <Roamly/Slides/OnceCache.h>
#include <Roamly/Slides/SlideTextRenderer.h>
#include <Roamly/Slides/SlideshowFrameSource.h>

#include <algorithm>
#include <exception>
#include <mutex>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

namespace Slides {

namespace {

using Foundation::Uuid;
using Frames::FrameSize;

/// The overlay of a photo or the title of a card, at one size.
struct TextKey {
    std::variant<Timeline::OverlaySpec, std::string> text;
    FrameSize size;

    friend bool operator==(const TextKey&, const TextKey&) = default;
};

/// All that a frame without movement depends on.
struct StillKey {
    std::optional<TextKey> text;
    std::optional<Uuid> photo;
    FrameSize size;

    friend bool operator==(const StillKey&, const StillKey&) = default;
};

/// The current photo's texts, the next one's, and those of a frame that is late.
constexpr std::size_t textLimit = 3;
constexpr std::size_t stillLimit = 2;

Timeline::KenBurnsTransform::Sample motionAt(const Timeline::PhotoSegment& segment, double progress) {
    return segment.kenBurns ? segment.kenBurns->sample(progress) : Timeline::KenBurnsTransform::Sample{};
}

} // namespace

struct SlideshowFrameSource::State {
    State(const ProjectModel::Project& project, PhotoLoader loader, std::size_t cacheLimit)
        : loadPhoto(std::move(loader))
        , photos(cacheLimit) {
        refByID.reserve(project.photos.size());
        for (const ProjectModel::PhotoItem& photo : project.photos)
            refByID.try_emplace(photo.id, photo.source);
    }

    std::shared_ptr<const Frames::PreparedPhoto> photo(const Uuid& id);
    std::shared_ptr<const Frames::PreparedPhoto> load(const Uuid& id);
    bool hasFailed(const Uuid& id) const;

    std::shared_ptr<const Frames::PreparedOverlay> text(const TextKey& key);
    std::shared_ptr<const Frames::YuvFrame> still(const StillKey& key,
                                                  std::span<const Frames::PhotoLayer> layers = {});

    std::shared_ptr<const Frames::YuvFrame> frame(const Timeline::ChapterSegment& card, FrameSize size);
    std::shared_ptr<const Frames::YuvFrame> frame(const Timeline::PhotoState& state, FrameSize size);
    std::shared_ptr<const Frames::YuvFrame> frame(const Timeline::EmptyState& state, FrameSize size);

    std::unordered_map<Uuid, ProjectModel::PhotoRef> refByID;
    PhotoLoader loadPhoto;

    OnceCache<Uuid, Frames::PreparedPhoto> photos;
    OnceCache<TextKey, Frames::PreparedOverlay> texts{textLimit};
    OnceCache<StillKey, Frames::YuvFrame> stills{stillLimit};

    mutable std::mutex failedMutex;
    std::set<Uuid> failedIDs;
};

bool SlideshowFrameSource::State::hasFailed(const Uuid& id) const {
    const std::scoped_lock lock(failedMutex);
    return failedIDs.contains(id);
}

std::shared_ptr<const Frames::PreparedPhoto> SlideshowFrameSource::State::photo(const Uuid& id) {
    // A failure that another thread recorded while this one queued up is seen only inside.
    return hasFailed(id) ? nullptr : photos.get(id, [&] { return hasFailed(id) ? nullptr : load(id); });
}

std::shared_ptr<const Frames::PreparedPhoto> SlideshowFrameSource::State::load(const Uuid& id) {
    std::shared_ptr<const Frames::PreparedPhoto> prepared;
    try {
        if (const auto ref = refByID.find(id); ref != refByID.end() && loadPhoto) {
            if (const auto image = loadPhoto(ref->second); image && !image->isEmpty())
                prepared = Frames::preparePhoto(*image);
        }
    } catch (const std::exception&) {
        // Out of memory, or a loader that throws: the photo is missing from the film, the film goes on.
    }
    if (!prepared) {
        const std::scoped_lock lock(failedMutex);
        failedIDs.insert(id);
    }
    return prepared;
}

std::shared_ptr<const Frames::PreparedOverlay> SlideshowFrameSource::State::text(const TextKey& key) {
    return texts.get(key, [&] {
        if (const auto* overlay = std::get_if<Timeline::OverlaySpec>(&key.text))
            return Frames::prepareOverlay(SlideTextRenderer::overlay(*overlay, key.size), key.size);
        const auto& title = std::get<std::string>(key.text);
        return Frames::prepareOverlay(SlideTextRenderer::chapterCard(title, key.size), key.size);
    });
}

std::shared_ptr<const Frames::YuvFrame>
SlideshowFrameSource::State::still(const StillKey& key, std::span<const Frames::PhotoLayer> layers) {
    return stills.get(key, [&] {
        const auto overlay = key.text ? text(*key.text) : nullptr;
        return Frames::compose(key.size, layers, overlay.get());
    });
}

std::shared_ptr<const Frames::YuvFrame>
SlideshowFrameSource::State::frame(const Timeline::ChapterSegment& card, FrameSize size) {
    return still({TextKey{card.title, size}, std::nullopt, size});
}

std::shared_ptr<const Frames::YuvFrame> SlideshowFrameSource::State::frame(const Timeline::EmptyState&,
                                                                           FrameSize size) {
    return still({std::nullopt, std::nullopt, size});
}

std::shared_ptr<const Frames::YuvFrame> SlideshowFrameSource::State::frame(const Timeline::PhotoState& state,
                                                                           FrameSize size) {
    // Both photos are held here for the length of this frame, however small the cache.
    const auto current = photo(state.current.photoID);
    const auto incoming = state.incoming ? photo(state.incoming->photoID) : nullptr;
    // The outgoing photo fades while the incoming one appears, both over black; the dip in the middle of a
    // dissolve is intended.
    const bool isLeaving = state.incoming && *state.incoming != state.current;

    std::vector<Frames::PhotoLayer> layers;
    if (const double opacity = isLeaving ? 1 - state.incomingOpacity : 1; current && opacity > 0)
        layers.push_back({current, motionAt(state.current, state.progress), opacity});
    if (incoming && state.incomingOpacity > 0)
        layers.push_back(
            {incoming, motionAt(*state.incoming, state.incomingProgress), state.incomingOpacity});

    const TextKey textKey{state.current.overlay, size};
    if (layers.empty())
        return still({textKey, std::nullopt, size});
    if (!state.incoming && !state.current.kenBurns)
        return still({textKey, state.current.photoID, size}, layers);
    return Frames::compose(size, layers, text(textKey).get());
}

SlideshowFrameSource::SlideshowFrameSource(const ProjectModel::Project& project, PhotoLoader loadPhoto,
                                           std::size_t cacheLimit)
    : m_state(std::make_unique<State>(project, std::move(loadPhoto), cacheLimit)) {}

SlideshowFrameSource::~SlideshowFrameSource() = default;

std::shared_ptr<const Frames::YuvFrame> SlideshowFrameSource::frame(const Timeline::RenderState& state,
                                                                    FrameSize size) {
    if (size.width <= 0 || size.height <= 0)
        return nullptr;
    try {
        return std::visit([&](const auto& shown) { return m_state->frame(shown, size); }, state);
    } catch (const std::exception&) {
        return nullptr;
    }
}

std::set<Uuid> SlideshowFrameSource::failedPhotoIDs() const {
    const std::scoped_lock lock(m_state->failedMutex);
    return m_state->failedIDs;
}

} // namespace Slides
