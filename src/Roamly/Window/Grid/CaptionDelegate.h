// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStyledItemDelegate>

namespace Grid {

/// Edits a photo's caption in its line under the tile: Return commits, Esc reverts, Tab commits and goes to
/// the next photo's.
class CaptionDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    /// Leaves what was typed already when the photo changes meanwhile.
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    /// Hands on only what was changed.
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
};

} // namespace Grid
