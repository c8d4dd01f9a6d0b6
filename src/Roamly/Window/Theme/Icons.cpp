// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Theme/IconEngine.h>
#include <Roamly/Window/Theme/Icons.h>

#include <QDir>
#include <QFile>

// Resources of a static library are there only once somebody asks for them; the macro wants no namespace.
static void registerIcons() {
    Q_INIT_RESOURCE(icons);
    Q_INIT_RESOURCE(programIcons);
}

namespace Theme {

namespace {

QByteArray source(const QString& name) {
    registerIcons();
    QFile file{QStringLiteral(":/icons/%1.svg").arg(name)};
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray{};
}

} // namespace

QIcon icon(const QString& name) {
    return icon(name, QColor{});
}

QIcon icon(const QString& name, const QColor& colour) {
    const QByteArray svg = source(name);
    return svg.isEmpty() ? QIcon{} : QIcon{new IconEngine{name, svg, colour}};
}

QStringList iconNames() {
    registerIcons();
    QStringList names;
    for (const QString& file :
         QDir{QStringLiteral(":/icons")}.entryList({QStringLiteral("*.svg")}, QDir::Files, QDir::Name)) {
        const QString name = file.chopped(4);
        if (!name.startsWith(QStringLiteral("app.")) && !name.startsWith(QStringLiteral("application-")))
            names.append(name);
    }
    return names;
}

QIcon programIcon() {
    const QString name = QStringLiteral("app.roamly.Roamly");
    return QIcon{new IconEngine{name, source(name), QColor{}}};
}

} // namespace Theme
