// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Project.h>
#include <Roamly/Jobs/Job.h>

#include <QObject>
#include <optional>

namespace Shell {

/// How long the project's music is, found on a worker whenever the music is another one.
class MusicLength : public QObject {
    Q_OBJECT

public:
    explicit MusicLength(QObject* parent = nullptr);
    ~MusicLength() override;

    void follow(const ProjectModel::Project& project);

    /// Of one play; nothing while it is not known, and where there is none.
    [[nodiscard]] const std::optional<double>& seconds() const { return m_seconds; }

Q_SIGNALS:
    void changed();

private:
    std::optional<ProjectModel::MusicSelection> m_music;
    std::optional<double> m_seconds;
    Jobs::Job m_job;
};

} // namespace Shell
