// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Theme/DarkMode.h>
#include <Roamly/Window/Theme/Icons.h>
#include <Roamly/Window/Theme/Style.h>
#include <Roamly/Window/Theme/Theme.h>

#include <QStyleHints>
#include <QtGlobal>

namespace Theme {

namespace {

/// What the platform itself looks like, before anything of ours is set.
Scheme platformScheme() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    if (const Qt::ColorScheme scheme = QGuiApplication::styleHints()->colorScheme();
        scheme != Qt::ColorScheme::Unknown)
        return scheme == Qt::ColorScheme::Dark ? Scheme::Dark : Scheme::Light;
#endif
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128 ? Scheme::Dark
                                                                                : Scheme::Light;
}

void setStyle(QApplication& application) {
    if (!qobject_cast<Style*>(QApplication::style()))
        application.setStyle(new Style);
    QApplication::setWindowIcon(programIcon());
}

} // namespace

void apply(QApplication& application) {
    const QColor accent = QGuiApplication::palette().color(QPalette::Active, QPalette::Highlight);
    const Scheme platform = platformScheme();
    setStyle(application);
    auto* const mode = new DarkMode{platform, QDBusConnection::sessionBus(),
                                    QStringLiteral("org.freedesktop.portal.Desktop"), &application};
    QApplication::setPalette(palette(mode->scheme(), accent));
    QObject::connect(mode, &DarkMode::changed, &application,
                     [accent](Scheme scheme) { QApplication::setPalette(palette(scheme, accent)); });
}

void apply(QApplication& application, Scheme scheme, const QColor& accent) {
    setStyle(application);
    QApplication::setPalette(palette(scheme, accent));
}

} // namespace Theme
