// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/Words.h>
#include <Roamly/Window/Shell/Actions.h>
#include <Roamly/Window/Shell/MainToolBar.h>
#include <Roamly/Window/Theme/Icons.h>

#include <QEvent>
#include <QMenu>

namespace Shell {

MainToolBar::MainToolBar(const Actions& actions, QWidget* parent)
    : QToolBar(parent) {
    setWindowTitle(QStringLiteral("Toolbar"));
    setAccessibleName(windowTitle());
    setObjectName(QStringLiteral("toolbar"));
    setMovable(false);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setIconSize({24, 24});
    // Qt's own button for what does not fit, which it gives no name.
    if (auto* const overflow = findChild<QToolButton*>(QStringLiteral("qt_toolbar_ext_button")))
        overflow->setAccessibleName(QStringLiteral("More Buttons"));

    auto* const importing = new QMenu(this);
    importing->addAction(actions[Intent::importFolder]);
    importing->addAction(actions[Intent::importAlbum]);
    addMenuButton(QStringLiteral("Import"), QStringLiteral("import"),
                  QString::fromUtf8(ProjectModel::Words::importHelp.data()), importing);
    addButton(QStringLiteral("Analyze"), actions[Intent::analyze]);
    addButton(QStringLiteral("Generate Captions"), actions[Intent::generateCaptions]);
    addButton(QStringLiteral("Caption Prompt"), actions[Intent::captionPrompt]);
    m_projectSettings = addButton(QStringLiteral("Project Settings"), actions[Intent::projectSettings]);

    auto* const more = new QMenu(this);
    more->setToolTipsVisible(true);
    more->addAction(actions[Intent::resetAnalysis]);
    more->addSeparator();
    more->addAction(actions[Intent::chooseMusic]);
    more->addAction(actions[Intent::noMusic]);
    more->addSeparator();
    more->addAction(actions[Intent::manageSources]);
    more->addAction(actions[Intent::locateMissing]);
    addMenuButton(QStringLiteral("More"), QStringLiteral("more"),
                  QStringLiteral("Reset analysis, choose music, or manage sources"), more);

    auto* const space = new QWidget(this);
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    addWidget(space);
    addButton(QStringLiteral("Play"), actions[Intent::play]);
    addButton(QStringLiteral("Export"), actions[Intent::exportMovie]);

    adoptHelp();
    fit();
}

QToolButton* MainToolBar::addButton(const QString& name, QAction* action) {
    auto* const button = new QToolButton(this);
    button->setText(name);
    button->setIcon(action->icon());
    button->setAccessibleName(name);
    button->setFocusPolicy(Qt::TabFocus);
    button->setAutoRaise(true);
    connect(button, &QToolButton::clicked, action, &QAction::trigger);
    connect(action, &QAction::changed, this, [this] { adoptHelp(); });
    addWidget(button);
    m_buttons.push_back({button, action});
    return button;
}

QToolButton* MainToolBar::addMenuButton(const QString& name, const QString& icon, const QString& help,
                                        QMenu* menu) {
    auto* const button = new QToolButton(this);
    button->setText(name);
    button->setIcon(Theme::icon(icon));
    button->setAccessibleName(name);
    button->setAccessibleDescription(help);
    button->setToolTip(help);
    button->setFocusPolicy(Qt::TabFocus);
    button->setAutoRaise(true);
    button->setMenu(menu);
    button->setPopupMode(QToolButton::InstantPopup);
    addWidget(button);
    m_buttons.push_back({button, nullptr});
    return button;
}

/// A button has its action's help and ability, and a name of its own.
void MainToolBar::adoptHelp() {
    for (const Button& entry : m_buttons) {
        if (entry.action == nullptr)
            continue;
        entry.button->setEnabled(entry.action->isEnabled());
        entry.button->setToolTip(entry.action->toolTip());
        entry.button->setAccessibleDescription(entry.action->toolTip());
    }
}

void MainToolBar::resizeEvent(QResizeEvent* event) {
    QToolBar::resizeEvent(event);
    fit();
}

bool MainToolBar::event(QEvent* event) {
    const bool isDone = QToolBar::event(event);
    // The texts' widths are known for sure once the style is.
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange ||
        event->type() == QEvent::Show) {
        m_widthWithTexts = 0;
        fit();
    }
    return isDone;
}

void MainToolBar::fit() {
    const auto setStyle = [this](Qt::ToolButtonStyle style) {
        for (const Button& entry : m_buttons)
            entry.button->setToolButtonStyle(style);
    };
    if (m_widthWithTexts == 0) {
        setStyle(Qt::ToolButtonTextBesideIcon);
        // Between and around the buttons.
        m_widthWithTexts = 32;
        for (const Button& entry : m_buttons)
            m_widthWithTexts += entry.button->sizeHint().width() + 8;
    }
    setStyle(width() < m_widthWithTexts ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon);
}

} // namespace Shell
