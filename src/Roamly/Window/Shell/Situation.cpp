// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/CaptionProvider.h>
#include <Roamly/Window/Shell/Situation.h>

namespace Shell {

namespace {

ActionState only(bool isEnabled, std::string_view reason) {
    ActionState state;
    state.isEnabled = isEnabled;
    if (!isEnabled)
        state.help = std::string{reason};
    return state;
}

ActionState step(std::string_view verb, const std::optional<std::string>& name) {
    return {.isEnabled = name.has_value(), .text = std::string{verb} + (name ? " " + *name : "")};
}

ActionState generateCaptions(const Situation& now) {
    if (!now.allowsAICaptions)
        return only(false, now.captionsHelp);
    if (now.isCaptioning)
        return only(false, "Captions are being generated already");
    if (now.selected == 0)
        return only(false, "Select photos for the film first");
    return {.help = now.captionsHelp};
}

ActionState regenerateCaption(const Situation& now) {
    if (!now.allowsAICaptions)
        return only(false, now.captionsHelp);
    if (now.isCaptioning)
        return only(false, "Captions are being generated already");
    return only(now.marked == 1, "Choose one photo first");
}

} // namespace

Situation situationOf(const Document::ProjectDocument& document, const Document::AppSettings& user) {
    const ProjectModel::Project& project = document.project();
    Situation now;
    now.photos = project.photos.size();
    for (const ProjectModel::PhotoItem& photo : project.photos) {
        now.selected += photo.isSelected ? 1 : 0;
        now.missing += photo.isMissing ? 1 : 0;
    }
    now.undoName = document.undoName();
    now.redoName = document.redoName();
    now.isModified = document.isModified();
    now.usesManualOrder = project.usesManualOrder;
    now.hasSources = !project.sources.empty();
    now.hasMusic = project.music.has_value();
    now.allowsAICaptions = Document::allowsAICaptions(project.settings, user);
    now.captionsHelp = Document::generateCaptionsHelp(project.settings, user);
    return now;
}

std::string whyNoCaption(Situation now) {
    now.marked = 1;
    return regenerateCaption(now).help.value_or("");
}

ActionState actionState(Intent intent, const Situation& now) {
    const bool hasPhotos = now.photos > 0;
    switch (intent) {
    case Intent::undo:
        return step("Undo", now.undoName);
    case Intent::redo:
        return step("Redo", now.redoName);
    case Intent::save:
        return only(now.isModified || !now.hasFile, "There is nothing to save");
    case Intent::revert:
        return only(now.isModified && now.hasFile, "Nothing differs from the file");
    case Intent::importFolder:
    case Intent::importAlbum:
        return only(!now.isImporting, "Photos are being imported already");
    case Intent::selectAll:
    case Intent::selectNone:
    case Intent::find:
        return only(hasPhotos, "There are no photos yet");
    case Intent::toggleInFilm:
    case Intent::setPlace:
    case Intent::remove:
        return only(now.marked > 0, "Choose photos first");
    case Intent::openPhoto:
    case Intent::editCaption:
    case Intent::showInFiles:
        return only(now.marked == 1, "Choose one photo first");
    case Intent::compareGroup:
        return only(now.isMarkedInGroup, "Choose a photo that has similar shots first");
    case Intent::regenerateCaption:
        return regenerateCaption(now);
    case Intent::sortByDate:
        return only(now.usesManualOrder, "The photos are in the order of their dates");
    case Intent::analyze:
        if (now.isAnalyzing)
            return only(false, "The photos are being analyzed already");
        return only(hasPhotos, "Import photos first");
    case Intent::generateCaptions:
        return generateCaptions(now);
    case Intent::resetAnalysis:
        return only(hasPhotos && !now.isAnalyzing,
                    hasPhotos ? "The photos are being analyzed just now" : "There are no photos yet");
    case Intent::locateMissing:
        return only(now.missing > 0, "No photo is missing");
    case Intent::manageSources:
        return only(now.hasSources, "No folder or album was imported yet");
    case Intent::play:
        return only(now.selected > 0, hasPhotos ? "Select photos for the film first" : "Import photos first");
    case Intent::exportMovie:
        // While one runs, the sheet shows how far it is.
        return only(now.isExporting || now.selected > 0,
                    hasPhotos ? "Select photos for the film first" : "Import photos first");
    case Intent::noMusic:
        return only(now.hasMusic, "The film has no music");
    case Intent::largerPhotos:
    case Intent::smallerPhotos:
    case Intent::newProject:
    case Intent::open:
    case Intent::saveAs:
    case Intent::close:
    case Intent::quit:
    case Intent::settings:
    case Intent::captionPrompt:
    case Intent::projectSettings:
    case Intent::chooseMusic:
    case Intent::details:
    case Intent::fullScreen:
    case Intent::help:
    case Intent::shortcuts:
    case Intent::about:
        return {};
    }
    return {};
}

} // namespace Shell
