// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/Words.h>
#include <Roamly/Window/Shell/Actions.h>
#include <Roamly/Window/Theme/Icons.h>

#include <QKeySequence>
#include <array>

namespace Shell {

namespace {

struct Row {
    Intent intent;
    const char* text;
    /// Of Theme; empty for none.
    const char* icon;
    /// The desktop's own keys, or these in portable form.
    QKeySequence::StandardKey standardKey;
    const char* key;
    /// Empty: the text says it all.
    const char* help;
};

constexpr auto noKey = QKeySequence::UnknownKey;

const std::array rows{
    Row{Intent::newProject, "&New", "", QKeySequence::New, "Ctrl+N", ""},
    Row{Intent::open, "&Open…", "", QKeySequence::Open, "Ctrl+O", ""},
    Row{Intent::save, "&Save", "", QKeySequence::Save, "Ctrl+S", ""},
    Row{Intent::saveAs, "Save &As…", "", QKeySequence::SaveAs, "Ctrl+Shift+S", ""},
    Row{Intent::revert, "&Revert", "", noKey, "", "Go back to what the file holds"},
    Row{Intent::importFolder, "Import &Folder…", "folder", noKey, "Ctrl+I",
        ProjectModel::Words::importHelp.data()},
    Row{Intent::importAlbum, "Import Al&bum…", "album", noKey, "Ctrl+Shift+I",
        ProjectModel::Words::importHelp.data()},
    Row{Intent::close, "&Close", "", QKeySequence::Close, "Ctrl+W", ""},
    Row{Intent::quit, "&Quit", "", QKeySequence::Quit, "Ctrl+Q", ""},
    Row{Intent::undo, "&Undo", "undo", QKeySequence::Undo, "Ctrl+Z", ""},
    Row{Intent::redo, "&Redo", "redo", QKeySequence::Redo, "Ctrl+Shift+Z", ""},
    Row{Intent::selectAll, "Select &All", "", QKeySequence::SelectAll, "Ctrl+A", ""},
    Row{Intent::selectNone, "Select &None", "", noKey, "Ctrl+Shift+A", ""},
    Row{Intent::find, "&Find…", "search", QKeySequence::Find, "Ctrl+F", "Search captions, places and files"},
    Row{Intent::settings, "Se&ttings…", "settings", noKey, "Ctrl+,", ""},
    Row{Intent::openPhoto, "&Open Photo", "loupe", noKey, "Return", "See the photo large"},
    Row{Intent::compareGroup, "&Compare Group", "compare", noKey, "Ctrl+Return",
        "See similar shots side by side"},
    Row{Intent::toggleInFilm, "&In the Film", "check", noKey, "Space",
        "Take the chosen photos in or leave them out"},
    Row{Intent::editCaption, "Edit Cap&tion", "", noKey, "F2", ""},
    Row{Intent::setPlace, "Set &Place…", "place", noKey, "Ctrl+L", ""},
    Row{Intent::regenerateCaption, "Re&generate Caption", "captions", noKey, "Ctrl+Shift+G", ""},
    Row{Intent::showInFiles, "S&how in Files", "show-in-files", noKey, "", ""},
    Row{Intent::remove, "&Remove from Project", "trash", noKey, "Delete",
        "The photo’s file stays where it is"},
    Row{Intent::sortByDate, "&Sort by Date", "sort", noKey, "", "Take the order made by hand back"},
    Row{Intent::analyze, "&Analyze", "analyze", noKey, "Ctrl+Shift+L",
        "Find locations, group duplicates, and pick the best shots"},
    Row{Intent::generateCaptions, "&Generate Captions", "captions", noKey, "Ctrl+G", ""},
    Row{Intent::captionPrompt, "Caption Pro&mpt…", "prompt", noKey, "",
        "Set the AI prompt that steers caption tone and interpretation"},
    Row{Intent::resetAnalysis, "R&eset Analysis", "reset", noKey, "",
        "Select every photo again and forget duplicates and best shots; what you selected or left out goes "
        "too, "
        "and Undo brings it back"},
    Row{Intent::locateMissing, "&Locate Missing Photos…", "missing", noKey, "", ""},
    Row{Intent::manageSources, "Manage S&ources…", "sources", noKey, "", ""},
    Row{Intent::play, "&Play", "play", noKey, "F5", "Play the slideshow"},
    Row{Intent::exportMovie, "&Export…", "export", noKey, "Ctrl+E", "Export the slideshow to a video file"},
    Row{Intent::projectSettings, "Project &Settings…", "settings", noKey, "Ctrl+Shift+,",
        "Per-project timing, motion, captions, and AI provider"},
    Row{Intent::chooseMusic, "Choose &Music…", "music", noKey, "Ctrl+M", ""},
    Row{Intent::noMusic, "&No Music", "", noKey, "", ""},
    Row{Intent::details, "&Details", "info", noKey, "F9", ""},
    Row{Intent::largerPhotos, "&Larger Photos", "zoom-in", QKeySequence::ZoomIn, "Ctrl++", ""},
    Row{Intent::smallerPhotos, "S&maller Photos", "zoom-out", QKeySequence::ZoomOut, "Ctrl+-", ""},
    Row{Intent::fullScreen, "&Full Screen", "fullscreen", QKeySequence::FullScreen, "F11", ""},
    Row{Intent::help, "Roamly &Help", "help", QKeySequence::HelpContents, "F1", ""},
    Row{Intent::shortcuts, "&Keyboard Shortcuts", "", noKey, "Ctrl+?", ""},
    Row{Intent::about, "&About Roamly", "", noKey, "", ""},
};

/// Their keys belong to the photos that have the keyboard, which know them: elsewhere the same keys press
/// buttons and edit texts.
bool belongsToPhotos(Intent intent) {
    return intent == Intent::openPhoto || intent == Intent::toggleInFilm || intent == Intent::editCaption ||
           intent == Intent::remove;
}

const Row& rowOf(Intent intent) {
    for (const Row& row : rows) {
        if (row.intent == intent)
            return row;
    }
    Q_UNREACHABLE();
}

QList<QKeySequence> keysOf(const Row& row) {
    const QList<QKeySequence> bindings =
        row.standardKey == noKey ? QList<QKeySequence>{} : QKeySequence::keyBindings(row.standardKey);
    if (!bindings.isEmpty())
        return bindings;
    const QString text = QString::fromUtf8(row.key);
    return text.isEmpty() ? QList<QKeySequence>{} : QList{QKeySequence{text, QKeySequence::PortableText}};
}

/// A text that names what the user typed, such as a place with an "&" in it; its first letter is its key.
QString menuText(const std::string& text) {
    return QLatin1Char('&') + QString::fromStdString(text).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

/// The text as it is read out and shown in a tool tip.
QString plain(QString text) {
    return text.remove(QLatin1Char('&')).remove(QStringLiteral("…"));
}

} // namespace

Actions::Actions(QObject* parent)
    : QObject(parent) {
    for (const Row& row : rows) {
        auto* const action = new QAction(QString::fromUtf8(row.text), this);
        if (*row.icon != '\0')
            action->setIcon(Theme::icon(QString::fromUtf8(row.icon)));
        action->setShortcuts(keysOf(row));
        action->setShortcutContext(belongsToPhotos(row.intent) ? Qt::WidgetShortcut : Qt::WindowShortcut);
        action->setObjectName(plain(action->text()));
        connect(action, &QAction::triggered, this, [this, intent = row.intent] { Q_EMIT wanted(intent); });
        m_actions.emplace(row.intent, action);
    }
    m_actions.at(Intent::details)->setCheckable(true);
    m_actions.at(Intent::fullScreen)->setCheckable(true);
    m_actions.at(Intent::quit)->setMenuRole(QAction::QuitRole);
    show({});
}

void Actions::show(const Situation& situation) {
    for (const auto& [intent, action] : m_actions) {
        const Row& row = rowOf(intent);
        const ActionState state = actionState(intent, situation);
        action->setEnabled(state.isEnabled);
        action->setText(state.text ? menuText(*state.text) : QString::fromUtf8(row.text));
        const QString usual = *row.help != '\0' ? QString::fromUtf8(row.help) : plain(action->text());
        action->setToolTip(state.help ? QString::fromStdString(*state.help) : usual);
    }
}

} // namespace Shell
