// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/AlbumPicker.h>
#include <Roamly/Window/Sheets/Alerts.h>
#include <Roamly/Window/Sheets/Labels.h>
#include <Roamly/Window/Sheets/Quantities.h>
#include <Roamly/Window/Theme/Icons.h>
#include <Roamly/Window/Theme/SearchField.h>

#include <QEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QPainter>
#include <QStackedWidget>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace Sheets {

namespace {

constexpr int coverSide = 40;
constexpr int identifierRole = Qt::UserRole;

/// The picture cut square, without distortion.
QIcon coverIcon(const QImage& cover, qreal ratio) {
    if (cover.isNull())
        return Theme::icon(u"album"_s);
    const int side = static_cast<int>(coverSide * ratio);
    const QImage scaled = cover.scaled(side, side, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    QPixmap square = QPixmap::fromImage(
        scaled.copy((scaled.width() - side) / 2, (scaled.height() - side) / 2, side, side));
    square.setDevicePixelRatio(ratio);
    return QIcon{square};
}

QWidget* emptyPage() {
    const AlertContent texts = Alerts::noPhotoLibrary();
    auto* const page = new QWidget;
    auto* const column = new QVBoxLayout{page};
    column->setSpacing(8);
    QLabel* const title = groupTitle(texts.title);
    title->setAlignment(Qt::AlignCenter);
    QLabel* const text = note(texts.message);
    text->setAlignment(Qt::AlignCenter);
    column->addStretch(1);
    column->addWidget(picture(texts.icon, 48), 0, Qt::AlignHCenter);
    column->addWidget(title);
    column->addWidget(text);
    column->addStretch(1);
    return page;
}

} // namespace

AlbumPicker::AlbumPicker(const std::vector<LibraryChoice>& libraries, QWidget* parent)
    : Sheet(u"Choose an Album"_s, parent)
    , m_pages(new QStackedWidget)
    , m_search(new QLineEdit)
    , m_list(new QTreeWidget) {
    setMinimumSize(560, 480);
    m_search->setAccessibleName(u"Search albums"_s);
    m_search->setPlaceholderText(u"Search albums"_s);
    Theme::makeSearchField(*m_search);
    m_list->setAccessibleName(u"Albums"_s);
    m_list->setHeaderHidden(true);
    m_list->setColumnCount(2);
    m_list->setIconSize({coverSide, coverSide});
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    auto* const albums = new QWidget;
    auto* const column = new QVBoxLayout{albums};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(m_search);
    column->addWidget(m_list, 1);
    m_pages->addWidget(albums);
    m_pages->addWidget(emptyPage());
    body()->addWidget(m_pages, 1);

    QPushButton* const cancel = addButton(u"Cancel"_s, QDialogButtonBox::RejectRole);
    m_import = addButton(u"Import"_s, QDialogButtonBox::AcceptRole);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    const auto accept = [this] {
        const QStringList albumsNow = chosen();
        if (albumsNow.isEmpty())
            return;
        this->accept();
        Q_EMIT albumsChosen(albumsNow);
    };
    connect(m_import, &QPushButton::clicked, this, accept);
    connect(m_list, &QTreeWidget::itemDoubleClicked, this, accept);
    connect(m_list, &QTreeWidget::itemSelectionChanged, this, &AlbumPicker::followChoice);
    connect(m_search, &QLineEdit::textChanged, this, &AlbumPicker::filter);
    fill(libraries);
    followChoice();
}

void AlbumPicker::fill(const std::vector<LibraryChoice>& libraries) {
    for (const LibraryChoice& library : libraries) {
        auto* const group = new QTreeWidgetItem{{library.name}};
        group->setFlags(Qt::ItemIsEnabled);
        QFont font = m_list->font();
        font.setWeight(QFont::DemiBold);
        group->setFont(0, font);
        m_list->addTopLevelItem(group);
        for (const AlbumChoice& album : library.albums) {
            auto* const item = new QTreeWidgetItem{group, {album.title, photoCountText(album.photoCount)}};
            item->setData(0, identifierRole, album.identifier);
            item->setIcon(0, coverIcon(album.cover, devicePixelRatioF()));
            item->setSizeHint(0, {0, coverSide + 8});
            item->setTextAlignment(1, Qt::AlignVCenter | Qt::AlignTrailing);
        }
        group->setExpanded(true);
    }
    tintCounts();
    m_pages->setCurrentIndex(libraries.empty() ? 1 : 0);
    m_import->setVisible(!libraries.empty());
}

void AlbumPicker::tintCounts() {
    for (int group = 0; group < m_list->topLevelItemCount(); ++group)
        for (int row = 0; row < m_list->topLevelItem(group)->childCount(); ++row)
            m_list->topLevelItem(group)->child(row)->setForeground(
                1, palette().color(QPalette::PlaceholderText));
}

void AlbumPicker::changeEvent(QEvent* event) {
    Sheet::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        tintCounts();
}

void AlbumPicker::setCover(const QString& identifier, const QImage& cover) {
    for (int group = 0; group < m_list->topLevelItemCount(); ++group) {
        QTreeWidgetItem* const library = m_list->topLevelItem(group);
        for (int row = 0; row < library->childCount(); ++row)
            if (library->child(row)->data(0, identifierRole).toString() == identifier)
                library->child(row)->setIcon(0, coverIcon(cover, devicePixelRatioF()));
    }
}

void AlbumPicker::filter(const QString& text) {
    const QString wanted = text.trimmed();
    for (int group = 0; group < m_list->topLevelItemCount(); ++group) {
        QTreeWidgetItem* const library = m_list->topLevelItem(group);
        bool hasAny = false;
        for (int row = 0; row < library->childCount(); ++row) {
            QTreeWidgetItem* const album = library->child(row);
            const bool matches = album->text(0).contains(wanted, Qt::CaseInsensitive);
            album->setHidden(!matches);
            // What can't be seen must not be imported.
            if (!matches)
                album->setSelected(false);
            hasAny = hasAny || matches;
        }
        library->setHidden(!hasAny);
    }
}

QStringList AlbumPicker::chosen() const {
    QStringList identifiers;
    for (int group = 0; group < m_list->topLevelItemCount(); ++group) {
        const QTreeWidgetItem* const library = m_list->topLevelItem(group);
        for (int row = 0; row < library->childCount(); ++row)
            if (library->child(row)->isSelected())
                identifiers.append(library->child(row)->data(0, identifierRole).toString());
    }
    return identifiers;
}

void AlbumPicker::followChoice() {
    m_import->setEnabled(!chosen().isEmpty());
}

} // namespace Sheets
