// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/DisplayText.h>
#include <Roamly/Window/Shell/Actions.h>
#include <Roamly/Window/Shell/Menus.h>

#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <initializer_list>
#include <optional>

namespace Shell {

namespace {

/// Adds the actions; nothing stands for a line between them.
void add(QMenu& menu, const Actions& actions, std::initializer_list<std::optional<Intent>> intents) {
    for (const std::optional<Intent>& intent : intents) {
        if (intent)
            menu.addAction(actions[*intent]);
        else
            menu.addSeparator();
    }
}

/// Lets a menu bar that has the keyboard be worked by keys that stand for actions elsewhere.
class OwnKeys : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::ShortcutOverride)
            return false;
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key != Qt::Key_Space && key != Qt::Key_Return)
            return false;
        event->accept();
        return true;
    }
};

QMenu& addMenu(QMenuBar& bar, const QString& title) {
    QMenu* const menu = bar.addMenu(title);
    menu->setToolTipsVisible(true);
    return *menu;
}

} // namespace

void fillMenuBar(QMenuBar& bar, const Actions& actions, const std::function<void(QMenu&)>& recent) {
    constexpr auto line = std::nullopt;
    bar.installEventFilter(new OwnKeys{&bar});

    QMenu& file = addMenu(bar, QStringLiteral("&File"));
    add(file, actions, {Intent::newProject, Intent::open});
    QMenu* const recentMenu = file.addMenu(QStringLiteral("Open &Recent"));
    QObject::connect(recentMenu, &QMenu::aboutToShow, recentMenu, [recent, recentMenu] {
        recentMenu->clear();
        recent(*recentMenu);
        if (recentMenu->isEmpty())
            recentMenu->addAction(QStringLiteral("No Recent Projects"))->setEnabled(false);
    });
    add(file, actions,
        {line, Intent::importFolder, Intent::importAlbum, line, Intent::save, Intent::saveAs, Intent::revert,
         line, Intent::close, Intent::quit});

    add(addMenu(bar, QStringLiteral("&Edit")), actions,
        {Intent::undo, Intent::redo, line, Intent::selectAll, Intent::selectNone, line, Intent::find, line,
         Intent::settings});

    add(addMenu(bar, QStringLiteral("&Photos")), actions,
        {Intent::openPhoto, Intent::compareGroup, line, Intent::toggleInFilm, Intent::editCaption,
         Intent::regenerateCaption, Intent::setPlace, Intent::showInFiles, Intent::remove, line,
         Intent::analyze, Intent::generateCaptions, Intent::captionPrompt, Intent::resetAnalysis, line,
         Intent::sortByDate, Intent::locateMissing, Intent::manageSources});

    add(addMenu(bar, QStringLiteral("&Slideshow")), actions,
        {Intent::play, Intent::exportMovie, line, Intent::chooseMusic, Intent::noMusic, line,
         Intent::projectSettings});

    add(addMenu(bar, QStringLiteral("&View")), actions,
        {Intent::details, line, Intent::largerPhotos, Intent::smallerPhotos, line, Intent::fullScreen});

    add(addMenu(bar, QStringLiteral("&Help")), actions,
        {Intent::help, Intent::shortcuts, line, Intent::about});
}

void fillRecentMenu(QMenu& menu, const std::vector<std::filesystem::path>& projects,
                    const std::function<void(const std::filesystem::path&)>& open) {
    for (const std::filesystem::path& project : projects) {
        const QString name = QString::fromStdString(Foundation::displayText(project.stem()));
        QAction* const action = menu.addAction(QString{name}.replace(QLatin1Char('&'), QStringLiteral("&&")));
        action->setToolTip(QString::fromStdString(Foundation::displayText(project)));
        QObject::connect(action, &QAction::triggered, &menu, [open, project] { open(project); });
    }
}

} // namespace Shell
