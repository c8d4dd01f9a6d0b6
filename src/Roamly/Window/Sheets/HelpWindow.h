// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>
#include <QString>

class QLabel;
class QLineEdit;
class QListWidget;
class QTextBrowser;

namespace Sheets {

/// The help: a list of short pages, a search over them, and the page.
class HelpWindow : public QDialog {
    Q_OBJECT
public:
    explicit HelpWindow(QWidget* parent = nullptr);

    /// By the page's name; an unknown one shows the first page.
    void showPage(const QString& name);

protected:
    void changeEvent(QEvent* event) override;

private:
    void listPages(const QString& words);
    void showCurrent();

    QLineEdit* m_search;
    QListWidget* m_list;
    QTextBrowser* m_page;
};

} // namespace Sheets
