// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace Shell {

/// What the user may want of a window, however they say it: a menu, a button, a key.
enum class Intent {
    newProject,
    open,
    save,
    saveAs,
    revert,
    importFolder,
    importAlbum,
    close,
    quit,
    undo,
    redo,
    selectAll,
    selectNone,
    find,
    settings,
    openPhoto,
    compareGroup,
    toggleInFilm,
    editCaption,
    setPlace,
    regenerateCaption,
    showInFiles,
    remove,
    sortByDate,
    analyze,
    generateCaptions,
    captionPrompt,
    resetAnalysis,
    locateMissing,
    manageSources,
    play,
    exportMovie,
    projectSettings,
    chooseMusic,
    noMusic,
    details,
    largerPhotos,
    smallerPhotos,
    fullScreen,
    help,
    shortcuts,
    about,
};

} // namespace Shell
