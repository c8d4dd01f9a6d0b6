// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/PhotoEvidence.h>
#include <Roamly/Window/Grid/CloseUp.h>
#include <Roamly/Window/Grid/Comparison.h>
#include <Roamly/Window/Grid/DetailsPanel.h>
#include <Roamly/Window/Grid/Loupe.h>
#include <Roamly/Window/Grid/PhotoText.h>

#include <QStackedWidget>
#include <algorithm>
#include <utility>

namespace Grid {

using Foundation::Uuid;
using ProjectModel::PhotoItem;

namespace {

std::vector<Shot> shotsOf(const std::vector<PhotoItem>& group) {
    std::vector<Shot> shots;
    for (const PhotoItem& photo : group) {
        const Document::Standing standing = Document::standing(group, photo);
        shots.push_back({.photo = photo,
                         .place = QString::fromStdString(Document::placeInGroup(standing)),
                         .quality = QString::fromStdString(Document::quality(standing)),
                         .isBest = standing.place == 1U});
    }
    return shots;
}

PhotoDetails detailsOf(const ProjectModel::Project& project, const PhotoItem& photo, const QTimeZone& zone) {
    PhotoDetails details;
    details.photo = photo;
    details.date = photo.captureDate ? PhotoText::moment(*photo.captureDate, zone) : QString{};
    details.place = PhotoText::place(photo);
    details.placeEvidence = QString::fromStdString(Document::placeEvidence(project, photo));
    details.whyNoFile = PhotoText::whyNoFile(photo);
    const std::vector<PhotoItem> group = Document::groupOf(project, photo.id);
    if (group.size() > 1) {
        const Document::Standing standing = Document::standing(group, photo);
        details.shot = QString::fromStdString(Document::placeInGroup(standing));
        details.quality = QString::fromStdString(Document::quality(standing));
    }
    return details;
}

} // namespace

CloseUp::CloseUp(ReviewPane& pane, Document::ProjectDocument& document, ThumbnailFeed& feed,
                 LargePhotos::Load load, QTimeZone zone)
    : m_pane(&pane)
    , m_document(&document)
    , m_review(document)
    , m_zone(std::move(zone))
    , m_large(std::move(load))
    , m_views(new QStackedWidget)
    , m_loupe(new Loupe{pane.photos(), feed, m_large, m_zone})
    , m_comparison(new Comparison{feed, m_large})
    , m_details(new DetailsPanel{feed}) {
    m_views->addWidget(m_loupe);
    m_views->addWidget(m_comparison);
    pane.setLoupe(m_views);
    pane.setDetails(m_details);
    connect(m_pane, &ReviewPane::loupeRequested, this, &CloseUp::openPhoto);
    connect(m_pane, &ReviewPane::groupRequested, this, &CloseUp::compareGroup);
    connect(m_pane, &ReviewPane::chosenChanged, this, &CloseUp::showChosen);
    connect(m_comparison, &Comparison::left, this, [this] { leave(); });
    connect(m_comparison, &Comparison::decisionToggled, this, [this](const std::vector<Uuid>& photos) {
        m_review.toggleSelections({photos.begin(), photos.end()});
    });
    connectLoupe();
    connectDetails();
    showChosen();
}

void CloseUp::connectLoupe() {
    connect(m_loupe, &Loupe::left, this, [this] { leave(); });
    connect(m_loupe, &Loupe::walked, this, [this](const Uuid& photo) { m_pane->grid().goTo(photo); });
    connect(m_loupe, &Loupe::groupRequested, this, &CloseUp::compareGroup);
    connect(m_loupe, &Loupe::decisionToggled, this, [this](const std::vector<Uuid>& photos) {
        m_review.toggleSelections({photos.begin(), photos.end()});
    });
    connect(m_loupe, &Loupe::removalRequested, this, [this](const std::vector<Uuid>& photos) {
        m_review.removePhotos({photos.begin(), photos.end()});
    });
}

void CloseUp::connectDetails() {
    connect(m_details, &DetailsPanel::captionEdited, this, &CloseUp::store);
    connect(m_details, &DetailsPanel::fileRequested, m_pane, &ReviewPane::fileRequested);
    connect(m_details, &DetailsPanel::groupRequested, this, &CloseUp::compareGroup);
    connect(m_details, &DetailsPanel::placeRequested, m_pane,
            [this](const Uuid& photo) { Q_EMIT m_pane->placeRequested({photo}); });
}

void CloseUp::store(const Uuid& photo, const QString& caption) {
    const auto change = [this, photo, text = caption.toStdString()] { m_review.setCaption(text, photo); };
    // The document is not to be changed by those who hear of its change.
    if (m_isRefreshing)
        QMetaObject::invokeMethod(this, change, Qt::QueuedConnection);
    else
        change();
}

void CloseUp::refresh() {
    m_isRefreshing = true;
    showChosen();
    showGroup();
    m_isRefreshing = false;
}

void CloseUp::openPhoto(const Uuid& photo) {
    show(m_loupe);
    m_loupe->open(photo);
}

void CloseUp::compareGroup(const Uuid& photo) {
    if (Document::groupOf(m_document->project(), photo).size() < 2)
        return;
    m_cameFromLoupe = m_pane->isLoupeShown() && m_views->currentWidget() == m_loupe;
    m_compared = photo;
    showGroup();
    show(m_comparison);
}

bool CloseUp::leave() {
    if (!m_pane->isLoupeShown())
        return false;
    const bool wasComparing = std::exchange(m_compared, std::nullopt).has_value();
    if (wasComparing && std::exchange(m_cameFromLoupe, false)) {
        show(m_loupe);
        return true;
    }
    m_pane->showLoupe(false);
    return true;
}

void CloseUp::show(QWidget* view) {
    m_views->setCurrentWidget(view);
    m_pane->showLoupe(true);
    view->setFocus();
}

void CloseUp::showGroup() {
    if (!m_compared)
        return;
    const std::vector<PhotoItem> group = Document::groupOf(m_document->project(), *m_compared);
    if (group.size() < 2)
        leave();
    else
        m_comparison->setShots(shotsOf(group));
}

void CloseUp::showDetails(bool isShown) {
    if (!isShown)
        m_details->finishEditing();
    m_pane->showDetails(isShown);
    showChosen();
}

void CloseUp::finishEditing() {
    m_details->finishEditing();
}

void CloseUp::showChosen() {
    if (m_details->isHidden())
        return;
    const std::vector<Uuid> chosen = m_pane->grid().choice().chosenOrCurrent();
    const auto& photos = m_document->project().photos;
    const auto found =
        chosen.size() == 1 ? std::ranges::find(photos, chosen.front(), &PhotoItem::id) : photos.end();
    if (found != photos.end())
        m_details->setDetails(detailsOf(m_document->project(), *found, m_zone));
    else
        m_details->setDetails(std::nullopt, chosen.size() > 1
                                                ? QStringLiteral("%1 photos chosen").arg(chosen.size())
                                                : QStringLiteral("Choose a photo to see its details"));
}

} // namespace Grid
