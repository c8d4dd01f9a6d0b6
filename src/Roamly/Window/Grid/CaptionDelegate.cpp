// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/CaptionDelegate.h>
#include <Roamly/Window/Grid/CellAreas.h>

#include <QAbstractItemModel>
#include <QLineEdit>

namespace Grid {

QWidget* CaptionDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                       const QModelIndex& /*index*/) const {
    auto* editor = new QLineEdit{parent};
    editor->setAccessibleName(QStringLiteral("Caption"));
    editor->setPlaceholderText(QStringLiteral("Add a caption"));
    return editor;
}

void CaptionDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    auto* line = qobject_cast<QLineEdit*>(editor);
    if (line && !line->isModified())
        line->setText(index.data(Qt::EditRole).toString());
}

void CaptionDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                   const QModelIndex& index) const {
    const auto* line = qobject_cast<QLineEdit*>(editor);
    if (line && line->text() != index.data(Qt::EditRole).toString())
        model->setData(index, line->text(), Qt::EditRole);
}

void CaptionDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                           const QModelIndex& /*index*/) const {
    const QRect line = CellAreas::of(option.rect, {}, option.direction == Qt::RightToLeft).caption;
    // A frame of its own and a little air beside the text.
    editor->setGeometry(line.adjusted(-4, -2, 4, 2));
}

} // namespace Grid
