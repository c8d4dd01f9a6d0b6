// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Sheets/Sheet.h>
#include <Roamly/Window/Sheets/SourceRows.h>

#include <optional>
#include <vector>

class QLabel;
class QStackedWidget;
class QTreeWidget;

namespace Sheets {

/// Lists the folders and albums the photos came from, and takes wishes about them.
class SourcesManager : public Sheet {
    Q_OBJECT
public:
    SourcesManager(const std::vector<SourceRow>& rows, QWidget* parent);

    /// The sources as they are now; the one that is chosen stays chosen while it exists.
    void showRows(const std::vector<SourceRow>& rows);

Q_SIGNALS:
    void addFolderRequested();
    /// With its photos.
    void removeRequested(const Foundation::Uuid& source);
    /// Where photos of this source are now.
    void locateRequested(const Foundation::Uuid& source);

private:
    [[nodiscard]] const SourceRow* chosen() const;
    void followChoice();

    std::vector<SourceRow> m_rows;
    QStackedWidget* m_pages;
    QTreeWidget* m_list;
    QPushButton* m_remove;
    QPushButton* m_locate;
};

} // namespace Sheets
