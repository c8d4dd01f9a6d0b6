// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bookmark.h>
#include <Roamly/Document/PlaybackSettings.h>
#include <Roamly/Window/Shell/Players.h>
#include <Roamly/Window/Stage/PlayerWindow.h>
#include <Timeline/TimelineBuilder.h>

#include <utility>

namespace Shell {

namespace {

/// Photos are decoded to that many pixels for the screen, on their longest side.
constexpr int photoBound = 2048;

Stage::Film filmOf(const ProjectModel::Project& project, const QString& name,
                   const WindowServices& services) {
    const Timeline::EffectiveSettings settings =
        Document::effectiveSettings(project.settings, services.settings());
    Stage::Film film;
    film.timeline = Timeline::TimelineBuilder::build(project, settings);
    film.crossfade = settings.crossfade;
    film.frames = [make = services.engines.frames, project] { return make(project, photoBound); };
    if (film.timeline.audio)
        film.music = Foundation::BookmarkResolver().resolvedFile(film.timeline.audio->musicBookmark);
    film.title = name;
    return film;
}

} // namespace

Players::Players(WindowServices services, QObject* parent)
    : QObject(parent)
    , m_services(std::move(services)) {}

Players::~Players() {
    for (Stage::PlayerWindow* const player : std::exchange(m_players, {}))
        delete player;
}

void Players::play(const ProjectModel::Project& project, const QString& name, double from, bool inWindow) {
    auto* const player = new Stage::PlayerWindow(filmOf(project, name, m_services),
                                                 {.now = m_services.now, .keepAwake = m_services.keepAwake});
    m_players.insert(player);
    connect(player, &Stage::PlayerWindow::closed, this, [this, player] {
        m_players.erase(player);
        player->deleteLater();
        if (m_players.empty())
            Q_EMIT allClosed();
    });
    player->start(from, inWindow);
}

void Players::closeAll() {
    // Those without music are over at once.
    for (Stage::PlayerWindow* const player : std::set(m_players))
        player->close();
}

} // namespace Shell
