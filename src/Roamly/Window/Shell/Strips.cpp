// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/IssueStrip.h>
#include <Roamly/Window/Shell/MissingPhotos.h>
#include <Roamly/Window/Shell/Strips.h>
#include <Roamly/Window/Shell/WorkStrip.h>

#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace Shell {

Strips::Strips(std::function<double()> now, QWidget* parent)
    : QWidget(parent)
    , m_work(new WorkStrip(std::move(now)))
    , m_waiting(new IssueStrip(QStringLiteral("Waiting"), QStringLiteral("Cancel")))
    , m_issues(new IssueStrip(QStringLiteral("Issues"), QStringLiteral("Try Again")))
    , m_missing(new IssueStrip(QStringLiteral("Missing Photos"), QStringLiteral("Locate…"))) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_work);
    layout->addWidget(m_waiting);
    layout->addWidget(m_issues);
    layout->addWidget(m_missing);
    connect(m_work, &WorkStrip::cancelled, this, &Strips::cancelled);
    connect(m_waiting, &IssueStrip::remedyWanted, this, &Strips::waitingGivenUp);
    connect(m_waiting, &IssueStrip::dismissed, this, &Strips::waitingGivenUp);
    connect(m_issues, &IssueStrip::remedyWanted, this, &Strips::retryWanted);
    connect(m_issues, &IssueStrip::dismissed, m_issues, &QWidget::hide);
    connect(m_missing, &IssueStrip::remedyWanted, this, &Strips::locateWanted);
    connect(m_missing, &IssueStrip::dismissed, this, [this] {
        m_knownMissing = m_missingCount;
        showMissing(m_missingCount);
    });
}

void Strips::showWork(WorkKind kind, const std::optional<WorkRow>& row) {
    m_work->show(kind, row);
}

void Strips::showIssues(const QStringList& issues, bool canRetry) {
    m_issues->show(issues, canRetry);
}

void Strips::showMissing(std::size_t photos) {
    m_missingCount = photos;
    m_knownMissing = std::min(m_knownMissing, photos);
    const QString sentence = photos > m_knownMissing ? missingSentence(photos) : QString{};
    m_missing->show(sentence.isEmpty() ? QStringList{} : QStringList{sentence}, true);
}

void Strips::showWaiting(const QString& project) {
    QStringList waiting;
    if (!project.isEmpty())
        waiting << QStringLiteral("Waiting for another program that is using “%1”.").arg(project);
    m_waiting->show(waiting, true);
}

} // namespace Shell
