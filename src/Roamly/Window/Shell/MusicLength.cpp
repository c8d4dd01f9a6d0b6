// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/MusicFile.h>
#include <Foundation/Bookmark.h>
#include <Roamly/Window/Shell/EventLoop.h>
#include <Roamly/Window/Shell/MusicLength.h>

namespace Shell {

MusicLength::MusicLength(QObject* parent)
    : QObject(parent)
    , m_job(executorOf(this), Jobs::Job::WhenStopped::Drop) {}

MusicLength::~MusicLength() = default;

void MusicLength::follow(const ProjectModel::Project& project) {
    if (project.music == m_music)
        return;
    m_music = project.music;
    m_seconds.reset();
    (void)m_job.stop();
    if (!m_music)
        return;
    (void)m_job.start(
        [this, bookmark = m_music->bookmark](const Jobs::Job::Run& run) -> Jobs::Job::Landing {
            const auto file = Foundation::BookmarkResolver{}.resolvedFile(bookmark);
            if (!file)
                return {};
            const double seconds = Export::musicSeconds(*file, run.stop());
            return [this, seconds] {
                m_seconds = seconds;
                Q_EMIT changed();
            };
        },
        // Music that cannot be read has no length; exporting tells why.
        {});
}

} // namespace Shell
