// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Jobs/Job.h>

#include <QObject>
#include <QTimer>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace Shell {

/// The present path of a window's project, nothing where it has no file.
using ProjectPath = std::function<std::optional<std::filesystem::path>()>;

/// Where a window's unsaved project is kept for the case of a crash. What touches the disk is called on a
/// worker, one call at a time.
struct RecoveryPlace {
    ProjectPath path;
    /// Keeps the project in the place of what was kept before, with the file it was made from. Throws when it
    /// cannot.
    std::function<void(const ProjectModel::Project&, const std::optional<std::filesystem::path>& original)>
        write;
    std::function<void()> remove;
    /// What a crash left is there already.
    bool holdsCopy = false;
};

/// Keeps a copy of an unsaved project: what the user did is in it two seconds later at most. It is gone once
/// there is nothing unsaved.
class RecoveryKeeper : public QObject {
    Q_OBJECT

public:
    /// From the first change to the copy's writing; the rest of the two seconds is for writing it.
    static constexpr std::chrono::milliseconds delay{1500};

    /// Borrows the document.
    RecoveryKeeper(const Document::ProjectDocument& document, RecoveryPlace place, QObject* parent = nullptr);
    ~RecoveryKeeper() override;

    /// The document changed, or was saved.
    void update();
    /// Nothing needs to be recovered any more: the document is left. Waits for what is being written.
    void finish();

private:
    void keep();

    const Document::ProjectDocument* m_document;
    std::shared_ptr<const RecoveryPlace> m_place;
    QTimer m_timer;
    bool m_isKept;
    bool m_isBehind = false;
    std::unique_ptr<Jobs::Job> m_job;
};

} // namespace Shell
