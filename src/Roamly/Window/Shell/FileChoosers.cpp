// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/ExportSheet.h>
#include <Roamly/Window/Shell/FileChoosers.h>

#include <QFileDialog>
#include <QStandardPaths>

namespace Shell {

namespace {

QString projectFilter() {
    return QStringLiteral("Roamly projects (*.roamly)");
}

QFileDialog* dialog(QWidget* window, const QString& title, bool native) {
    auto* const result = new QFileDialog(window, title);
    result->setAttribute(Qt::WA_DeleteOnClose);
    result->setWindowModality(Qt::WindowModal);
    result->setOption(QFileDialog::DontUseNativeDialog, !native);
    return result;
}

Paths pathsOf(const QStringList& files) {
    Paths paths;
    for (const QString& file : files)
        paths.emplace_back(file.toStdString());
    return paths;
}

void openFor(QFileDialog* files, const FileChoosers::ManyChosen& chosen) {
    QObject::connect(files, &QFileDialog::filesSelected, files,
                     [chosen](const QStringList& selected) { chosen(pathsOf(selected)); });
    files->open();
}

void openForOne(QFileDialog* files, const FileChoosers::OneChosen& chosen) {
    openFor(files, [chosen](const Paths& paths) {
        if (!paths.empty())
            chosen(paths.front());
    });
}

void startIn(QFileDialog* files, QStandardPaths::StandardLocation location) {
    files->setDirectory(QStandardPaths::writableLocation(location));
}

} // namespace

FileChoosers desktopFileChoosers(bool native) {
    FileChoosers choosers;
    choosers.foldersToImport = [native](QWidget* window, const FileChoosers::ManyChosen& chosen) {
        QFileDialog* const files = dialog(window, QStringLiteral("Import Photos"), native);
        files->setFileMode(QFileDialog::Directory);
        files->setOption(QFileDialog::ShowDirsOnly);
        files->setLabelText(QFileDialog::Accept, QStringLiteral("Import"));
        startIn(files, QStandardPaths::PicturesLocation);
        openFor(files, chosen);
    };
    choosers.project = [native](QWidget* window, const FileChoosers::OneChosen& chosen) {
        QFileDialog* const files = dialog(window, QStringLiteral("Open Project"), native);
        files->setFileMode(QFileDialog::ExistingFile);
        files->setNameFilters({projectFilter(), QStringLiteral("All files (*)")});
        openForOne(files, chosen);
    };
    choosers.whereToSaveProject = [native](QWidget* window, const QString& sentence,
                                           const std::filesystem::path& proposed,
                                           const FileChoosers::OneChosen& chosen) {
        const QString title = QStringLiteral("Save Project");
        QFileDialog* const files =
            dialog(window, sentence.isEmpty() ? title : title + QStringLiteral(": ") + sentence, native);
        files->setAcceptMode(QFileDialog::AcceptSave);
        files->setNameFilter(projectFilter());
        files->setDefaultSuffix(QStringLiteral("roamly"));
        if (proposed.has_parent_path())
            files->setDirectory(QString::fromStdString(proposed.parent_path().string()));
        else
            startIn(files, QStandardPaths::DocumentsLocation);
        files->selectFile(QString::fromStdString(proposed.filename().string()));
        openForOne(files, chosen);
    };
    choosers.music = [native](QWidget* window, const FileChoosers::OneChosen& chosen) {
        QFileDialog* const files = dialog(window, QStringLiteral("Choose Music"), native);
        files->setFileMode(QFileDialog::ExistingFile);
        files->setNameFilters(
            {QStringLiteral("Music (*.mp3 *.m4a *.aac *.flac *.ogg *.opus *.wav *.aiff *.wma)"),
             QStringLiteral("All files (*)")});
        startIn(files, QStandardPaths::MusicLocation);
        openForOne(files, chosen);
    };
    choosers.folderOfMissing = [native](QWidget* window, const FileChoosers::OneChosen& chosen) {
        QFileDialog* const files = dialog(window, QStringLiteral("Locate Missing Photos"), native);
        files->setFileMode(QFileDialog::Directory);
        files->setOption(QFileDialog::ShowDirsOnly);
        files->setLabelText(QFileDialog::Accept, QStringLiteral("Locate"));
        openForOne(files, chosen);
    };
    choosers.movie = Sheets::movieFileDialog(native);
    return choosers;
}

} // namespace Shell
