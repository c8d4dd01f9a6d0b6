// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/Labels.h>
#include <Roamly/Window/Sheets/OwnOrDefault.h>
#include <Roamly/Window/Sheets/ProjectSettingsPopup.h>
#include <Roamly/Window/Theme/Icons.h>

#include <QFormLayout>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace Sheets {

namespace {

constexpr int popupWidth = 448;
constexpr int labelWidth = 176;

/// The index among "On", "Off".
int onOff(bool isOn) {
    return isOn ? 0 : 1;
}
std::optional<int> onOff(std::optional<bool> isOn) {
    return isOn ? std::optional{onOff(*isOn)} : std::nullopt;
}
std::optional<bool> isOn(std::optional<int> index) {
    return index ? std::optional{*index == 0} : std::nullopt;
}

OwnOrDefaultChoice* switchChoice(const QString& name, bool isOnByDefault) {
    return new OwnOrDefaultChoice{name, {u"On"_s, u"Off"_s}, onOff(isOnByDefault), {}};
}

template <typename Enumeration>
std::optional<int> index(std::optional<Enumeration> value) {
    return value ? std::optional{static_cast<int>(*value)} : std::nullopt;
}

template <typename Enumeration>
std::optional<Enumeration> value(std::optional<int> index) {
    return index ? std::optional{static_cast<Enumeration>(*index)} : std::nullopt;
}

template <typename Enumeration, std::size_t count>
OwnOrDefaultChoice* enumerationChoice(const QString& name, const std::array<Enumeration, count>& all,
                                      Enumeration byDefault) {
    QStringList names;
    for (const Enumeration each : all)
        names.append(toText(displayName(each)));
    return new OwnOrDefaultChoice{name, names, static_cast<int>(byDefault), {}};
}

} // namespace

ProjectSettingsPopup::ProjectSettingsPopup(const ProjectModel::ProjectSettings& project,
                                           const Document::AppSettings& user, const MusicFitOffer& musicFit,
                                           QWidget* parent)
    : QDialog(parent, Qt::Popup)
    , m_photoDuration(new OwnOrDefaultSeconds{u"Seconds per photo"_s, user.photoDuration, {}})
    , m_kenBurns(switchChoice(u"Ken Burns motion"_s, user.kenBurnsEnabled))
    , m_captions(switchChoice(u"Show captions"_s, user.captionsEnabled))
    , m_aiCaptions(switchChoice(u"Generate captions with AI"_s, user.aiCaptionsEnabled))
    , m_chapters(enumerationChoice(u"Chapter titles"_s, ProjectModel::allChapterStyles, user.chapterStyle))
    , m_provider(enumerationChoice(u"AI provider"_s, ProjectModel::allAIProviders, user.defaultAIProvider))
    , m_fit(new QPushButton{Theme::icon(u"music"_s), u"Fit to Music"_s})
    , m_fitExplanation(note()) {
    setWindowTitle(u"Project Settings"_s);
    setAccessibleName(u"Project Settings"_s);
    setFixedWidth(popupWidth);

    auto* const layout = new QVBoxLayout{this};
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(8);
    const auto addGroup = [layout](const QString& title) {
        if (layout->count() > 0)
            layout->addSpacing(8);
        layout->addWidget(groupTitle(title));
        auto* const form = new QFormLayout;
        form->setSpacing(8);
        form->setHorizontalSpacing(16);
        form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
        layout->addLayout(form);
        return form;
    };
    const auto addRow = [](QFormLayout* form, auto* field) {
        QLabel* const label = fieldLabel(field->accessibleName(), field);
        label->setMinimumWidth(labelWidth);
        form->addRow(label, field);
    };
    QFormLayout* const timing = addGroup(u"Timing and motion"_s);
    addRow(timing, m_photoDuration);
    m_fit->setAutoDefault(false);
    auto* const fitRow = new QHBoxLayout;
    fitRow->addWidget(m_fit);
    fitRow->addStretch(1);
    timing->addRow(QString{}, fitRow);
    timing->addRow(QString{}, m_fitExplanation);
    addRow(timing, m_kenBurns);
    addRow(timing, m_chapters);
    QFormLayout* const captions = addGroup(u"Captions"_s);
    addRow(captions, m_captions);
    addRow(captions, m_aiCaptions);
    addRow(captions, m_provider);

    setValues(project, musicFit);
    connect(m_photoDuration, &OwnOrDefaultSeconds::edited, this, &ProjectSettingsPopup::tellEdited);
    for (OwnOrDefaultChoice* const choice : {m_kenBurns, m_captions, m_aiCaptions, m_chapters})
        connect(choice, &OwnOrDefaultChoice::chosen, this, &ProjectSettingsPopup::tellEdited);
    connect(m_provider, &OwnOrDefaultChoice::chosen, this,
            [this] { Q_EMIT providerChosen(value<ProjectModel::AIProvider>(m_provider->own())); });
    connect(m_fit, &QPushButton::clicked, this, [this] {
        if (m_musicFit.photoDuration)
            Q_EMIT musicFitAccepted(*m_musicFit.photoDuration);
    });
}

void ProjectSettingsPopup::setValues(const ProjectModel::ProjectSettings& project,
                                     const MusicFitOffer& musicFit) {
    m_project = project;
    m_musicFit = musicFit;
    m_photoDuration->setOwn(project.photoDuration);
    m_kenBurns->setOwn(onOff(project.kenBurnsEnabled));
    m_captions->setOwn(onOff(project.captionsEnabled));
    m_aiCaptions->setOwn(onOff(project.aiCaptionsEnabled));
    m_chapters->setOwn(index(project.chapterStyle));
    m_provider->setOwn(index(project.aiProvider));
    m_fit->setEnabled(musicFit.photoDuration.has_value());
    m_fit->setToolTip(musicFit.explanation);
    m_fit->setAccessibleDescription(musicFit.explanation);
    m_fitExplanation->setText(musicFit.explanation);
    m_fitExplanation->setVisible(!musicFit.explanation.isEmpty());
    fitHeight();
}

void ProjectSettingsPopup::tellEdited() {
    m_project.photoDuration = m_photoDuration->own();
    m_project.kenBurnsEnabled = isOn(m_kenBurns->own());
    m_project.captionsEnabled = isOn(m_captions->own());
    m_project.aiCaptionsEnabled = isOn(m_aiCaptions->own());
    m_project.chapterStyle = value<ProjectModel::ChapterStyle>(m_chapters->own());
    Q_EMIT settingsEdited(m_project);
}

void ProjectSettingsPopup::fitHeight() {
    layout()->activate();
    resize(popupWidth, layout()->totalHeightForWidth(popupWidth));
}

void ProjectSettingsPopup::paintEvent(QPaintEvent* event) {
    QDialog::paintEvent(event);
    // A popup has no frame of its own.
    QPainter painter{this};
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void ProjectSettingsPopup::openUnder(const QWidget& button) {
    fitHeight();
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    QPoint place = button.mapToGlobal(isMirrored ? QPoint{button.width() - width(), button.height() + 4}
                                                 : QPoint{0, button.height() + 4});
    if (const QScreen* const screen = button.screen()) {
        const QRect room = screen->availableGeometry();
        place.setX(std::clamp(place.x(), room.left(), std::max(room.left(), room.right() - width())));
        place.setY(std::clamp(place.y(), room.top(), std::max(room.top(), room.bottom() - height())));
    }
    move(place);
    show();
    m_photoDuration->setFocus();
}

} // namespace Sheets
