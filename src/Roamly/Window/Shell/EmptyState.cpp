// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/DisplayText.h>
#include <ProjectModel/Words.h>
#include <Roamly/Window/Shell/EmptyState.h>
#include <Roamly/Window/Theme/Icons.h>

#include <QLabel>
#include <QLayoutItem>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

namespace Shell {

namespace {

constexpr std::size_t mostRecent = 5;

QLabel* centred(const QString& text, double scale, QFont::Weight weight) {
    auto* const label = new QLabel(text);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * scale);
    font.setWeight(weight);
    label->setFont(font);
    return label;
}

} // namespace

EmptyState::EmptyState(QWidget* parent)
    : QWidget(parent)
    , m_recent(new QWidget)
    , m_recentList(new QVBoxLayout(m_recent)) {
    setAccessibleName(QStringLiteral("No Photos Yet"));
    auto* const picture = new QLabel;
    picture->setPixmap(Theme::icon(QStringLiteral("import")).pixmap(64, 64, QIcon::Disabled));
    picture->setAlignment(Qt::AlignCenter);
    auto* const button = new QPushButton(QStringLiteral("Import Photos"));
    button->setDefault(true);
    button->setMinimumSize(136, 32);
    connect(button, &QPushButton::clicked, this, &EmptyState::importWanted);

    m_recent->setFixedWidth(360);
    m_recent->hide();
    m_recentList->setContentsMargins(0, 32, 0, 0);
    m_recentList->setSpacing(0);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(32, 32, 32, 32);
    layout->setSpacing(8);
    layout->addStretch(1);
    layout->addWidget(picture);
    layout->addSpacing(8);
    layout->addWidget(centred(QStringLiteral("No Photos Yet"), 1.5, QFont::DemiBold));
    layout->addWidget(centred(QString::fromUtf8(ProjectModel::Words::emptyProject.data()), 1, QFont::Normal));
    layout->addSpacing(16);
    layout->addWidget(button, 0, Qt::AlignHCenter);
    layout->addWidget(m_recent, 0, Qt::AlignHCenter);
    layout->addStretch(2);
}

void EmptyState::setRecentProjects(const std::vector<std::filesystem::path>& projects) {
    while (QLayoutItem* const item = m_recentList->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    m_recent->setVisible(!projects.empty());
    if (projects.empty())
        return;
    auto* const title = new QLabel(QStringLiteral("Recent Projects"));
    title->setForegroundRole(QPalette::PlaceholderText);
    title->setAlignment(Qt::AlignCenter);
    m_recentList->addWidget(title);
    m_recentList->addSpacing(8);
    for (std::size_t i = 0; i < std::min(projects.size(), mostRecent); ++i) {
        const std::filesystem::path& project = projects[i];
        const QString name = QString::fromStdString(Foundation::displayText(project.stem()));
        const QString folder = QString::fromStdString(Foundation::displayText(project.parent_path()));
        auto* const button = new QPushButton;
        button->setFlat(true);
        button->setText(button->fontMetrics().elidedText(name, Qt::ElideMiddle, 320));
        button->setToolTip(folder);
        button->setAccessibleName(QStringLiteral("Open %1").arg(name));
        button->setAccessibleDescription(folder);
        connect(button, &QPushButton::clicked, this, [this, project] { Q_EMIT openWanted(project); });
        m_recentList->addWidget(button);
    }
}

} // namespace Shell
