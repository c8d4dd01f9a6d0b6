// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/LaunchRequest.h>

#include <QMimeDatabase>

namespace Shell {

namespace {

std::filesystem::path absolute(const QString& word, const std::filesystem::path& folder) {
    return (folder / word.toStdString()).lexically_normal();
}

} // namespace

OpenFiles sorted(const std::vector<std::filesystem::path>& files) {
    OpenFiles open;
    for (const std::filesystem::path& file : files)
        (file.extension() == ".roamly" ? open.projects : open.photos).push_back(file);
    return open;
}

LaunchRequest launchRequest(const QStringList& words, const std::filesystem::path& folder) {
    PlayProject play;
    bool plays = false;
    bool optionsEnded = false;
    std::vector<std::filesystem::path> files;
    for (const QString& word : words) {
        if (optionsEnded || !word.startsWith(QLatin1String("--")))
            files.push_back(word.startsWith(QLatin1String("file:"))
                                ? std::filesystem::path{QUrl{word}.toLocalFile().toStdString()}
                                : absolute(word, folder));
        else if (word == QLatin1String("--"))
            optionsEnded = true;
        else if (word == QLatin1String("--service"))
            return Serve{};
        else if (word == QLatin1String("--new"))
            return ShowWindow{.inNewWindow = true};
        else if (word == QLatin1String("--play") || word == QLatin1String("--choose-and-play"))
            plays = true;
        else if (word == QLatin1String("--window"))
            play.inWindow = true;
        else if (word.startsWith(QLatin1String("--from=")))
            play.from = word.mid(7).toDouble();
    }
    if (plays) {
        if (!files.empty())
            play.project = files.front();
        return play;
    }
    if (files.empty())
        return ShowWindow{};
    return sorted(files);
}

DroppedFiles droppedFiles(const QList<QUrl>& urls) {
    const QMimeDatabase types;
    DroppedFiles dropped;
    for (const std::filesystem::path& file : localFiles(urls)) {
        const QString type = types.mimeTypeForFile(QString::fromStdString(file.string())).name();
        if (file.extension() == ".roamly")
            dropped.projects.push_back(file);
        else
            (type.startsWith(QLatin1String("audio/")) ? dropped.music : dropped.photos).push_back(file);
    }
    return dropped;
}

std::vector<std::filesystem::path> localFiles(const QList<QUrl>& urls) {
    std::vector<std::filesystem::path> files;
    for (const QUrl& url : urls) {
        if (url.isLocalFile())
            files.emplace_back(url.toLocalFile().toStdString());
    }
    return files;
}

} // namespace Shell
