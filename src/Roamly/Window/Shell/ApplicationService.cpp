// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/ApplicationService.h>

namespace Shell {

namespace {

/// Wayland's token, or the one of X11's startup notification.
QString tokenIn(const QVariantMap& platformData) {
    const QString token = platformData.value(QStringLiteral("activation-token")).toString();
    return token.isEmpty() ? platformData.value(QStringLiteral("desktop-startup-id")).toString() : token;
}

std::vector<std::filesystem::path> filesOf(const QStringList& uris) {
    QList<QUrl> urls;
    for (const QString& uri : uris)
        urls << QUrl{uri};
    return localFiles(urls);
}

} // namespace

void ApplicationService::Activate(const QVariantMap& platformData) {
    Q_EMIT requested(ShowWindow{}, tokenIn(platformData));
}

void ApplicationService::Open(const QStringList& uris, const QVariantMap& platformData) {
    Q_EMIT requested(sorted(filesOf(uris)), tokenIn(platformData));
}

void ApplicationService::ActivateAction(const QString& name, const QVariantList& parameter,
                                        const QVariantMap& platformData) {
    if (name == QLatin1String("new")) {
        Q_EMIT requested(ShowWindow{.inNewWindow = true}, tokenIn(platformData));
    } else if (name == QLatin1String("play")) {
        // As another start of the program asks: the words it was given.
        QStringList words{QStringLiteral("--play")};
        for (const QVariant& word : parameter)
            words << word.toString();
        Q_EMIT requested(launchRequest(words, "/"), tokenIn(platformData));
    }
}

} // namespace Shell
