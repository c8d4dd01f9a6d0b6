// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QToolBar>
#include <QToolButton>
#include <vector>

class QMenu;

namespace Shell {

class Actions;

/// The window's buttons: icon and text, icons alone where the window is too narrow for the texts.
class MainToolBar : public QToolBar {
    Q_OBJECT

public:
    explicit MainToolBar(const Actions& actions, QWidget* parent = nullptr);

    /// Where the project's settings open.
    [[nodiscard]] QToolButton* projectSettingsButton() const { return m_projectSettings; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    QToolButton* addButton(const QString& name, QAction* action);
    QToolButton* addMenuButton(const QString& name, const QString& icon, const QString& help, QMenu* menu);
    void adoptHelp();
    void fit();

    struct Button {
        QToolButton* button;
        /// What it does; none for a button with a menu.
        QAction* action;
    };
    std::vector<Button> m_buttons;
    QToolButton* m_projectSettings = nullptr;
    /// What it takes to show all texts, in pixels.
    int m_widthWithTexts = 0;
};

} // namespace Shell
