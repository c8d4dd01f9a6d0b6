// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/EventLoop.h>
#include <Roamly/Window/Shell/MissingPhotos.h>

#include <utility>

namespace Shell {

using Refreshes = Jobs::PhotoFileEnvironment::Refreshes;

MissingPhotos::MissingPhotos(Document::ProjectDocument& document, Jobs::PhotoFileEnvironment environment,
                             QObject* parent)
    : QObject(parent)
    , m_document(&document)
    , m_search(executorOf(this), std::move(environment)) {}

MissingPhotos::~MissingPhotos() = default;

void MissingPhotos::check() {
    m_search.check(m_document->project().photos, [this](const Refreshes& refreshes) {
        if (!refreshes.empty())
            m_document->refresh(refreshes);
    });
}

void MissingPhotos::locate(const std::filesystem::path& folder) {
    m_search.locate(m_document->project().photos, folder, std::nullopt, [this](const Refreshes& refreshes) {
        m_document->refresh(refreshes);
        const auto found = refreshes.size();
        Q_EMIT noticed(found == 0   ? QStringLiteral("None of the missing photos is there.")
                       : found == 1 ? QStringLiteral("1 photo was found again.")
                                    : QStringLiteral("%1 photos were found again.").arg(found));
    });
}

QString missingSentence(std::size_t count) {
    if (count == 0)
        return {};
    return count == 1 ? QStringLiteral("1 photo is missing: its file was moved, renamed or deleted.")
                      : QStringLiteral("%1 photos are missing: their files were moved, renamed or deleted.")
                            .arg(count);
}

} // namespace Shell
