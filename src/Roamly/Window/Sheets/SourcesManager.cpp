// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/Labels.h>
#include <Roamly/Window/Sheets/Quantities.h>
#include <Roamly/Window/Sheets/SourcesManager.h>
#include <Roamly/Window/Theme/Icons.h>

#include <QHeaderView>
#include <QStackedWidget>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace Sheets {

namespace {

enum Column { kindColumn, nameColumn, photosColumn, missingColumn };

QString kindText(SourceRow::Kind kind) {
    return kind == SourceRow::Kind::Folder ? u"Folder"_s : u"Album"_s;
}

QTreeWidgetItem* itemOf(const SourceRow& row) {
    auto* const item =
        new QTreeWidgetItem{{kindText(row.kind), toText(row.name), QString::number(row.photoCount),
                             QString::number(row.missingCount)}};
    item->setIcon(kindColumn, Theme::icon(row.kind == SourceRow::Kind::Folder ? u"folder"_s : u"album"_s));
    item->setToolTip(nameColumn, toText(row.name));
    for (const int column : {photosColumn, missingColumn})
        item->setTextAlignment(column, Qt::AlignVCenter | Qt::AlignTrailing);
    return item;
}

} // namespace

SourcesManager::SourcesManager(const std::vector<SourceRow>& rows, QWidget* parent)
    : Sheet(u"Sources"_s, parent)
    , m_pages(new QStackedWidget)
    , m_list(new QTreeWidget) {
    setMinimumSize(640, 400);
    m_list->setAccessibleName(u"Sources"_s);
    m_list->setHeaderLabels({u"Kind"_s, u"Folder or album"_s, u"Photos"_s, u"Missing"_s});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_list->header()->setSectionResizeMode(nameColumn, QHeaderView::Stretch);
    m_list->headerItem()->setTextAlignment(photosColumn, Qt::AlignVCenter | Qt::AlignTrailing);
    m_list->headerItem()->setTextAlignment(missingColumn, Qt::AlignVCenter | Qt::AlignTrailing);
    QLabel* const empty = note(u"No photos were imported yet. Add a folder to begin."_s);
    empty->setAlignment(Qt::AlignCenter);
    m_pages->addWidget(m_list);
    m_pages->addWidget(empty);
    body()->addWidget(m_pages, 1);

    QPushButton* const add = addButton(u"Add Folder…"_s, QDialogButtonBox::ActionRole);
    m_locate = addButton(u"Locate…"_s, QDialogButtonBox::ActionRole);
    m_remove = addButton(u"Remove"_s, QDialogButtonBox::ActionRole);
    QPushButton* const close = addButton(u"Close"_s, QDialogButtonBox::AcceptRole);
    connect(add, &QPushButton::clicked, this, &SourcesManager::addFolderRequested);
    connect(m_remove, &QPushButton::clicked, this, [this] {
        if (const SourceRow* const row = chosen())
            Q_EMIT removeRequested(row->id);
    });
    connect(m_locate, &QPushButton::clicked, this, [this] {
        if (const SourceRow* const row = chosen())
            Q_EMIT locateRequested(row->id);
    });
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_list, &QTreeWidget::currentItemChanged, this, &SourcesManager::followChoice);
    showRows(rows);
    m_list->setFocus();
}

const SourceRow* SourcesManager::chosen() const {
    const int index = m_list->currentItem() ? m_list->indexOfTopLevelItem(m_list->currentItem()) : -1;
    return index < 0 ? nullptr : &m_rows[static_cast<std::size_t>(index)];
}

void SourcesManager::showRows(const std::vector<SourceRow>& rows) {
    std::optional<Foundation::Uuid> before;
    if (const SourceRow* const row = chosen())
        before = row->id;
    {
        const QSignalBlocker quiet{m_list};
        m_list->clear();
        m_rows = rows;
        for (const SourceRow& row : m_rows) {
            QTreeWidgetItem* const item = itemOf(row);
            m_list->addTopLevelItem(item);
            if (before == row.id)
                m_list->setCurrentItem(item);
        }
        if (!m_list->currentItem() && !m_rows.empty())
            m_list->setCurrentItem(m_list->topLevelItem(0));
    }
    m_pages->setCurrentIndex(m_rows.empty() ? 1 : 0);
    followChoice();
}

void SourcesManager::followChoice() {
    const SourceRow* const row = chosen();
    m_remove->setEnabled(row != nullptr);
    m_locate->setEnabled(row && row->missingCount > 0);
    m_remove->setToolTip(
        row ? u"Remove this source and its %1 from the project"_s.arg(photoCountText(row->photoCount))
            : QString{});
    m_locate->setToolTip(!row                    ? QString{}
                         : row->missingCount > 0 ? u"Say where the missing photos are now"_s
                                                 : u"None of its photos is missing"_s);
}

} // namespace Sheets
