// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Grid/PhotoFilter.h>

#include <QWidget>

class QComboBox;
class QLineEdit;

namespace Grid {

/// Chooses which photos the grid shows.
class FilterBar : public QWidget {
    Q_OBJECT

public:
    explicit FilterBar(QWidget* parent = nullptr);

    [[nodiscard]] PhotoFilter filter() const;
    void setFilter(const PhotoFilter& filter);
    /// Puts the keyboard into the search field.
    void beginSearch();

Q_SIGNALS:
    void filterChanged(const PhotoFilter& filter);
    /// Return or Down in the search field: on to the photos.
    void left();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QComboBox* m_kind;
    QLineEdit* m_search;
};

} // namespace Grid
