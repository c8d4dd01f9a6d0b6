// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/Alerts.h>

using namespace Qt::StringLiterals;

namespace Sheets::Alerts {

AlertContent privacyConfirmation(const QString& title, const QString& message, const QString& agreement) {
    // Return alone must not send photos away.
    return {.icon = u"shield-warning"_s,
            .title = title,
            .message = message,
            .choices = {{Answer::Cancel, u"Cancel"_s}, {Answer::Agree, agreement, true}},
            .primary = Answer::Cancel,
            .escape = Answer::Cancel};
}

AlertContent noPhotoLibrary() {
    return {.icon = u"album"_s,
            .title = u"No photo library found"_s,
            .message = u"Roamly looks for the libraries of Shotwell and digiKam and found none."_s,
            .choices = {{Answer::Ok, u"OK"_s}},
            .primary = Answer::Ok,
            .escape = Answer::Ok};
}

AlertContent photoLibraryDenied(const QString& folder) {
    return {
        .icon = u"album"_s,
        .title = u"Photo library access is off"_s,
        .message =
            u"Roamly can’t read your photo library because access to “%1” was denied. Change the folder’s permissions, then try importing again."_s
                .arg(folder),
        .choices = {{Answer::Cancel, u"Cancel"_s}, {Answer::ShowInFiles, u"Show in Files"_s}},
        .primary = Answer::ShowInFiles,
        .escape = Answer::Cancel};
}

AlertContent saveChanges(const QString& projectName) {
    return {.icon = u"save"_s,
            .title = u"Save changes to “%1” before closing?"_s.arg(projectName),
            .message = u"If you discard them, what you changed since the last save is lost."_s,
            .choices = {{Answer::Discard, u"Discard"_s, true},
                        {Answer::Cancel, u"Cancel"_s},
                        {Answer::Save, u"Save"_s}},
            .primary = Answer::Save,
            .escape = Answer::Cancel};
}

AlertContent fileChanged(const QString& projectName) {
    return {
        .icon = u"warning"_s,
        .title = u"“%1” was changed by another program"_s.arg(projectName),
        .message =
            u"You have changed it here too. Keep your version and replace the file’s, or load the file’s version and give up your changes?"_s,
        .choices = {{Answer::Cancel, u"Cancel"_s},
                    {Answer::LoadFile, u"Load the File’s"_s, true},
                    {Answer::KeepMine, u"Keep Mine"_s}},
        .primary = Answer::KeepMine,
        .escape = Answer::Cancel};
}

AlertContent recovery(const QString& projectName, const QString& savedAt) {
    return {
        .icon = u"reset"_s,
        .title = u"Recover “%1”?"_s.arg(projectName),
        .message =
            u"Roamly ended unexpectedly. What you had changed was kept (%1) and can be opened again."_s.arg(
                savedAt),
        .choices = {{Answer::Discard, u"Discard"_s, true},
                    {Answer::Cancel, u"Later"_s},
                    {Answer::Recover, u"Recover"_s}},
        .primary = Answer::Recover,
        .escape = Answer::Cancel};
}

AlertContent error(const QString& title, const QString& message) {
    return {.icon = u"warning"_s,
            .title = title,
            .message = message,
            .choices = {{Answer::Ok, u"OK"_s}},
            .primary = Answer::Ok,
            .escape = Answer::Ok};
}

} // namespace Sheets::Alerts
