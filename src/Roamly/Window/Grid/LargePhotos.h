// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <Foundation/Uuid.h>
#include <ProjectModel/PhotoItem.h>

#include <QImage>
#include <QObject>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <unordered_map>
#include <vector>

namespace Grid {

/// Photos decoded for the screen, one after the other on a thread of its own. Only what is wished is kept.
/// Belongs to the window's thread.
class LargePhotos : public QObject {
    Q_OBJECT

public:
    /// A photo's pixels, its longest side at most the given pixels; nothing when that fails. Called on the
    /// worker's thread.
    using Load = std::function<std::optional<Foundation::Image>(const ProjectModel::PhotoRef&, int)>;

    struct Wish {
        Foundation::Uuid photo;
        ProjectModel::PhotoRef source;
        /// Of the longest side.
        int pixels = 0;
    };

    /// Without a loader there are no large photos.
    explicit LargePhotos(Load load, QObject* parent = nullptr);
    /// Waits for the decode under way.
    ~LargePhotos() override;

    /// What is on screen or will be next, the most urgent first. Takes the place of what was wished before.
    void wish(std::vector<Wish> wishes);
    /// Null until it is decoded. After a wish for more pixels it stays the smaller one until then.
    [[nodiscard]] QImage photo(const Foundation::Uuid& photo) const;

Q_SIGNALS:
    void ready(const Foundation::Uuid& photo);

private:
    struct Kept {
        QImage image;
        /// What was asked for, which may be more than the photo has.
        int pixels = 0;
    };

    void work(const std::stop_token& stop);
    void keep(const Foundation::Uuid& photo, Kept decoded);

    Load m_load;
    std::vector<Wish> m_wished;
    std::unordered_map<Foundation::Uuid, Kept> m_kept;

    std::mutex m_mutex;
    std::condition_variable_any m_hasMore;
    /// What the worker still has to do. Under the mutex.
    std::vector<Wish> m_waiting;
    /// What it has begun and what is not kept yet. Under the mutex.
    std::vector<Wish> m_begun;
    /// Last, so that it ends first.
    std::jthread m_worker;
};

} // namespace Grid
