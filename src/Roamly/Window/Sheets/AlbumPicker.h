// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Sheets/Sheet.h>

#include <QImage>
#include <QStringList>
#include <vector>

class QLineEdit;
class QStackedWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace Sheets {

struct AlbumChoice {
    /// The library's own identifier of it.
    QString identifier;
    QString title;
    int photoCount = 0;
    /// May be null: then a drawn one stands in its place.
    QImage cover;
};

/// One photo library of this computer.
struct LibraryChoice {
    /// "Shotwell", "digiKam".
    QString name;
    std::vector<AlbumChoice> albums;
};

/// Lets the user choose albums of the photo libraries to import.
class AlbumPicker : public Sheet {
    Q_OBJECT
public:
    AlbumPicker(const std::vector<LibraryChoice>& libraries, QWidget* parent);

    /// A cover that came later.
    void setCover(const QString& identifier, const QImage& cover);

Q_SIGNALS:
    /// The albums' identifiers, in the list's order. The sheet is closed then.
    void albumsChosen(const QStringList& identifiers);

protected:
    void changeEvent(QEvent* event) override;

private:
    void tintCounts();
    void fill(const std::vector<LibraryChoice>& libraries);
    void filter(const QString& text);
    void followChoice();
    [[nodiscard]] QStringList chosen() const;

    QStackedWidget* m_pages;
    QLineEdit* m_search;
    QTreeWidget* m_list;
    QPushButton* m_import;
};

} // namespace Sheets
