// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Jobs/PhotoFileCheck.h>

#include <utility>

namespace Jobs {

PhotoFileCheck::PhotoFileCheck(Executor executor, PhotoFileEnvironment environment,
                               std::function<void()> changed)
    : m_environment(std::make_shared<const PhotoFileEnvironment>(std::move(environment)))
    , m_changed(std::move(changed))
    , m_job(std::move(executor), Job::WhenStopped::Drop) {}

void PhotoFileCheck::changed() const {
    if (m_changed)
        m_changed();
}

void PhotoFileCheck::check(std::vector<ProjectModel::PhotoItem> photos, Found found) {
    start(
        [environment = m_environment](PhotoFileEnvironment::Photos given, const std::stop_token& stop) {
            return environment->check(given, stop);
        },
        std::move(photos), std::move(found));
}

void PhotoFileCheck::locate(std::vector<ProjectModel::PhotoItem> photos, std::filesystem::path chosen,
                            std::optional<Foundation::Uuid> meant, Found found) {
    start([environment = m_environment, chosen = std::move(chosen),
           meant](PhotoFileEnvironment::Photos given,
                  const std::stop_token& stop) { return environment->locate(given, chosen, meant, stop); },
          std::move(photos), std::move(found));
}

void PhotoFileCheck::cancel() {
    m_job.stop();
}

void PhotoFileCheck::start(Search search, std::vector<ProjectModel::PhotoItem> photos, Found found) {
    cancel();
    m_job.start(
        [search = std::move(search), photos = std::move(photos),
         found = std::move(found)](const Job::Run& run) {
            return [found, refreshes = search(photos, run.stop())] { found(refreshes); };
        },
        // A search that fails finds nothing new; the next opening looks again.
        [this](const Job::Ending&) { changed(); });
    changed();
}

} // namespace Jobs
