#pragma once

#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Jobs/Job.h>

#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>

namespace Shell {

/// Where a window's unsaved project is kept for the case of a crash. Both functions may take their time and
/// are called on a worker, one at a time.
struct RecoveryPlace {
    /// Keeps the project in the place of what was kept before. Throws when it cannot.
    std::function<void(const ProjectModel::Project&)> write;
    std::function<void()> remove;
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
    bool m_isKept = false;
    bool m_isBehind = false;
    std::unique_ptr<Jobs::Job> m_job;
};

} // namespace Shell
