// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/ExportSheet.h>
#include <Roamly/Window/Sheets/Labels.h>
#include <Roamly/Window/Sheets/Quantities.h>
#include <Roamly/Window/Theme/Colours.h>
#include <Roamly/Window/Theme/Icons.h>

#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace Sheets {

namespace {

constexpr int progressSteps = 1000;
constexpr qsizetype namedPhotos = 5;

/// An icon and texts beside it, as one widget.
QHBoxLayout* iconRow(QWidget* area, QLabel* icon) {
    auto* const row = new QHBoxLayout{area};
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(icon, 0, Qt::AlignTop);
    return row;
}

} // namespace

QString proposedMovieName() {
    return u"Slideshow.mov"_s;
}

QString missingPhotosSentence(const QStringList& names) {
    if (names.isEmpty())
        return {};
    const qsizetype shown = std::min(names.size(), namedPhotos);
    QString list = names.mid(0, shown).join(u", "_s);
    if (names.size() > shown)
        list += u" and %1 more"_s.arg(names.size() - shown);
    return photoCountText(names.size()) + u" can’t be found and will be black in the film: "_s + list + u'.';
}

ExportSheet::FileChooser movieFileDialog(bool native) {
    return [native](QWidget* parent, const QString& proposedName,
                    const std::function<void(const QString&)>& chosen) {
        auto* const dialog = new QFileDialog{parent, u"Export Slideshow"_s};
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setOption(QFileDialog::DontUseNativeDialog, !native);
        dialog->setAcceptMode(QFileDialog::AcceptSave);
        dialog->setNameFilters({u"QuickTime movie (*.mov)"_s, u"MPEG-4 movie (*.mp4)"_s});
        dialog->setDefaultSuffix(u"mov"_s);
        dialog->selectFile(proposedName);
        QObject::connect(dialog, &QFileDialog::filterSelected, dialog, [dialog](const QString& filter) {
            dialog->setDefaultSuffix(filter.contains(u"*.mp4"_s) ? u"mp4"_s : u"mov"_s);
        });
        QObject::connect(dialog, &QFileDialog::fileSelected, parent, chosen);
        dialog->open();
    };
}

ExportSheet::ExportSheet(ExportPlan plan, FileChooser chooseFile, QWidget* parent)
    : Sheet(u"Export Slideshow"_s, parent)
    , m_plan(std::move(plan))
    , m_chooseFile(std::move(chooseFile)) {
    addChoices();
    addMissingPhotos();
    addProgress();
    addOutcome();
    body()->addStretch(1);
    addButtons();
    showSummary();
    show(Jobs::ExportController::State{});
}

void ExportSheet::addChoices() {
    auto* const form = new QFormLayout;
    form->setSpacing(8);
    form->setHorizontalSpacing(16);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    m_resolution = new QComboBox;
    for (const Export::ExportResolution resolution : Export::allExportResolutions)
        m_resolution->addItem(toText(displayName(resolution)));
    m_codec = new QComboBox;
    for (const Export::ExportCodec codec : Export::allExportCodecs)
        m_codec->addItem(toText(displayName(codec)));
    m_resolution->setCurrentIndex(static_cast<int>(m_plan.preset.resolution));
    m_codec->setCurrentIndex(static_cast<int>(m_plan.preset.codec));
    form->addRow(fieldLabel(u"Resolution"_s, m_resolution), m_resolution);
    form->addRow(fieldLabel(u"Codec"_s, m_codec), m_codec);
    body()->addLayout(form);
    m_summary = note();
    body()->addWidget(m_summary);
    connect(m_resolution, &QComboBox::activated, this, [this] {
        showSummary();
        Q_EMIT resolutionChosen(preset().resolution);
    });
    connect(m_codec, &QComboBox::activated, this, [this] {
        showSummary();
        Q_EMIT codecChosen(preset().codec);
    });
}

void ExportSheet::addMissingPhotos() {
    if (m_plan.missingPhotos.isEmpty())
        return;
    auto* const area = new QWidget;
    QHBoxLayout* const row = iconRow(area, picture(u"missing"_s, 16));
    QLabel* const text = sentence(missingPhotosSentence(m_plan.missingPhotos));
    text->setObjectName(u"missingPhotos"_s);
    row->addWidget(text, 1);
    body()->addWidget(area);
}

void ExportSheet::addProgress() {
    m_progressArea = new QWidget;
    auto* const column = new QVBoxLayout{m_progressArea};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    auto* const texts = new QHBoxLayout;
    m_stage = sentence();
    m_timeLeft = note();
    m_timeLeft->setAlignment(Qt::AlignTrailing);
    texts->addWidget(m_stage, 1);
    texts->addWidget(m_timeLeft, 1);
    auto* const bar = new QHBoxLayout;
    bar->setSpacing(16);
    m_progress = new QProgressBar;
    m_progress->setRange(0, progressSteps);
    m_progress->setTextVisible(false);
    m_progress->setAccessibleName(u"Export progress"_s);
    m_cancel = new QPushButton{u"Cancel"_s};
    m_cancel->setAutoDefault(false);
    connect(m_cancel, &QPushButton::clicked, this, &ExportSheet::cancelRequested);
    bar->addWidget(m_progress, 1);
    bar->addWidget(m_cancel);
    column->addLayout(texts);
    column->addLayout(bar);
    body()->addWidget(m_progressArea);
}

void ExportSheet::addOutcome() {
    m_savedArea = new QWidget;
    QHBoxLayout* const row = iconRow(m_savedArea, picture(u"check-circle"_s, 24));
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(8);
    auto* const saved = groupTitle(u"Saved"_s);
    saved->setMinimumHeight(24);
    texts->addWidget(saved);
    m_savedName = note();
    texts->addWidget(m_savedName);
    m_failedPhotos = sentence();
    texts->addWidget(m_failedPhotos);
    auto* const actions = new QHBoxLayout;
    auto* const showInFiles = new QPushButton{Theme::icon(u"show-in-files"_s), u"Show in Files"_s};
    auto* const play = new QPushButton{Theme::icon(u"play"_s), u"Play"_s};
    for (QPushButton* const button : {showInFiles, play}) {
        button->setAutoDefault(false);
        actions->addWidget(button);
    }
    actions->addStretch(1);
    texts->addLayout(actions);
    row->addLayout(texts, 1);
    connect(showInFiles, &QPushButton::clicked, this, [this] { Q_EMIT showInFilesRequested(m_savedPath); });
    connect(play, &QPushButton::clicked, this, [this] { Q_EMIT playRequested(m_savedPath); });
    body()->addWidget(m_savedArea);

    m_errorArea = new QWidget;
    QHBoxLayout* const errorRow = iconRow(m_errorArea, picture(u"warning"_s, 16));
    m_error = sentence();
    m_error->setTextInteractionFlags(Qt::TextSelectableByMouse);
    errorRow->addWidget(m_error, 1);
    body()->addWidget(m_errorArea);
}

void ExportSheet::addButtons() {
    QPushButton* const close = addButton(u"Close"_s, QDialogButtonBox::RejectRole);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    m_export = addButton(u"Export…"_s, QDialogButtonBox::AcceptRole);
    connect(m_export, &QPushButton::clicked, this, [this] {
        m_chooseFile(this, proposedMovieName(), [this](const QString& path) {
            if (!path.isEmpty())
                Q_EMIT exportRequested(preset(), path);
        });
    });
}

Export::ExportPreset ExportSheet::preset() const {
    return {.resolution =
                Export::allExportResolutions[static_cast<std::size_t>(m_resolution->currentIndex())],
            .codec = Export::allExportCodecs[static_cast<std::size_t>(m_codec->currentIndex())]};
}

void ExportSheet::showSummary() {
    const Export::ExportEstimate estimate =
        Export::estimateExport(m_plan.filmSeconds, preset(), m_plan.processorCount);
    m_summary->setText(
        u"%1 · film %2 · %3 · %4"_s.arg(photoCountText(m_plan.photoCount), lengthText(m_plan.filmSeconds),
                                        roughSizeText(estimate.bytes), roughTimeText(estimate.seconds)));
    m_summary->setToolTip(
        u"Size and time are guesses from other films; photos with much detail take more."_s);
}

void ExportSheet::show(const Jobs::ExportController::State& state, std::optional<double> secondsLeft) {
    const bool isSaved = !state.isExporting && state.savedPath.has_value();
    const bool hasError = !state.isExporting && !isSaved && state.errorText.has_value();
    const bool changesShape = m_progressArea->isVisibleTo(this) != state.isExporting ||
                              m_savedArea->isVisibleTo(this) != isSaved ||
                              m_errorArea->isVisibleTo(this) != hasError;
    m_resolution->setEnabled(!state.isExporting);
    m_codec->setEnabled(!state.isExporting);
    m_export->setEnabled(!state.isExporting);

    m_progressArea->setVisible(state.isExporting);
    m_stage->setText(toText(state.stageText));
    m_progress->setValue(static_cast<int>(std::lround(std::clamp(state.progress, 0.0, 1.0) * progressSteps)));
    m_progress->setAccessibleDescription(m_stage->text());
    m_cancel->setEnabled(!state.isStopping);
    m_timeLeft->setText(state.isExporting && !state.isStopping && secondsLeft
                            ? roughTimeText(*secondsLeft) + u" left"_s
                            : QString{});

    m_savedArea->setVisible(isSaved);
    if (isSaved) {
        m_savedPath = QString::fromStdString(state.savedPath->string());
        m_savedName->setText(m_savedPath);
        const auto failed = Jobs::ExportController::failedPhotosSentence(state.failedPhotoCount());
        m_failedPhotos->setText(failed ? QString::fromStdString(*failed) : QString{});
        m_failedPhotos->setVisible(failed.has_value());
    }
    m_errorArea->setVisible(hasError);
    m_error->setText(hasError ? QString::fromStdString(*state.errorText) : QString{});
    if (changesShape)
        fitHeight();
}

} // namespace Sheets
