// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/PhotoRefreshes.h>
#include <Roamly/Document/EditName.h>
#include <Roamly/Document/ProjectDifference.h>

#include <cstddef>
#include <deque>
#include <optional>
#include <string>

namespace Document {

/// The steps that can be undone and redone, as what each made different. It holds no project: the caller
/// carries the differences out. Bounded in bytes: beyond the limit the oldest steps are forgotten, the newest
/// never.
class History {
public:
    static constexpr std::size_t defaultLimit = std::size_t{64} * 1024 * 1024;

    explicit History(std::size_t limit = defaultLimit)
        : m_limit(limit) {}

    /// Nothing when there is nothing to undo (to redo).
    [[nodiscard]] std::optional<std::string> undoName() const;
    [[nodiscard]] std::optional<std::string> redoName() const;

    /// The step before is undone: what that makes different, until the history changes. The caller's error
    /// when there is none.
    const ProjectDifference& undo();
    const ProjectDifference& redo();

    /// Adds a step; what was undone can be redone no more.
    const ProjectDifference& add(const EditName& name, ProjectDifference difference);

    /// Whether an edit of that name goes on with the newest step: it has the same key, and nothing came
    /// between.
    [[nodiscard]] bool continues(const EditName& name) const;
    /// Takes the newest step out so that it can be added again with what continues it.
    [[nodiscard]] ProjectDifference takeNewest();

    /// The newest step is complete: nothing continues it.
    void seal() { m_isSealed = true; }
    void clear();

    /// The steps lead to and from the photos as they were refreshed.
    void refresh(const ProjectModel::PhotoRefreshes& refreshes);

    [[nodiscard]] std::size_t bytes() const { return m_bytes; }

private:
    struct Step {
        EditName name;
        ProjectDifference difference;
        std::size_t bytes;
    };

    void forgetOldest();

    std::size_t m_limit;
    std::size_t m_bytes = 0;
    /// The newest last. Their differences lead forward.
    std::deque<Step> m_done;
    /// The one to redo first last. Their differences lead back, as they were carried out last.
    std::deque<Step> m_undone;
    bool m_isSealed = true;
};

} // namespace Document
