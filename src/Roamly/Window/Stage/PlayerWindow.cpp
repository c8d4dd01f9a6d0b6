// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Stage/PlayerControls.h>
#include <Roamly/Window/Stage/PlayerWindow.h>

#include <QCloseEvent>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>
#include <variant>

namespace Stage {

namespace {

/// About as often as screens show something new.
constexpr int tickMilliseconds = 16;
constexpr int hideMilliseconds = 2000;
constexpr int widestControls = 960;
constexpr int controlsHeight = 56;
constexpr int controlsMargin = 24;

std::vector<ChapterMark> chaptersOf(const Timeline::SlideshowTimeline& timeline) {
    std::vector<ChapterMark> chapters;
    for (const Timeline::TimelineItem& item : timeline.items) {
        if (const auto* const card = std::get_if<Timeline::ChapterSegment>(&item))
            chapters.push_back({card->start, QString::fromStdString(card->title)});
        else if (const auto& photo = std::get<Timeline::PhotoSegment>(item); photo.overlay.chapterTitle)
            chapters.push_back({photo.start, QString::fromStdString(*photo.overlay.chapterTitle)});
    }
    return chapters;
}

} // namespace

PlayerWindow::PlayerWindow(Film film, PlayerServices services)
    : m_services(std::move(services))
    , m_model(film.timeline, film.crossfade, [this] { showChange(); }) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setWindowTitle(film.title.isEmpty() ? QStringLiteral("Slideshow")
                                        : QStringLiteral("Slideshow — %1").arg(film.title));
    setAccessibleName(QStringLiteral("Slideshow"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setMinimumSize(640, 360);
    resize(1280, 720);

    const auto& audio = film.timeline.audio;
    if (audio && film.music)
        m_music = std::make_unique<Player::AudioPlayerController>(*film.music, *audio);

    m_controls =
        new PlayerControls(film.timeline.totalDuration, chaptersOf(film.timeline), m_music != nullptr, this);
    // What moves over a control, or goes to it by Tab, keeps the controls there.
    for (QWidget* const widget : m_controls->findChildren<QWidget*>())
        widget->installEventFilter(this);
    connect(m_controls, &PlayerControls::playWanted, this, &PlayerWindow::togglePlay);
    connect(m_controls, &PlayerControls::previousWanted, this, [this] { m_model.previous(); });
    connect(m_controls, &PlayerControls::nextWanted, this, [this] { m_model.next(); });
    connect(m_controls, &PlayerControls::positionWanted, this, [this](double time) { m_model.seek(time); });
    connect(m_controls, &PlayerControls::closeWanted, this, &QWidget::close);
    connect(m_controls, &PlayerControls::muteWanted, this, [this](bool isMuted) {
        if (m_music)
            m_music->setMuted(isMuted);
    });

    m_tick.setTimerType(Qt::PreciseTimer);
    m_tick.setInterval(tickMilliseconds);
    connect(&m_tick, &QTimer::timeout, this, &PlayerWindow::pass);
    m_hide.setSingleShot(true);
    m_hide.setInterval(hideMilliseconds);
    connect(&m_hide, &QTimer::timeout, this, &PlayerWindow::hideControls);

    m_feed = std::make_unique<FrameFeed>(std::move(film.frames),
                                         Timeline::Playhead{film.timeline, film.crossfade}, [this] {
                                             QMetaObject::invokeMethod(
                                                 this, [this] { takePicture(); }, Qt::QueuedConnection);
                                         });
    m_model.onScrub([this](double time) {
        m_feed->jump(time);
        if (m_music)
            m_music->scrub(time);
    });
}

PlayerWindow::~PlayerWindow() = default;

void PlayerWindow::start(double from, bool inWindow) {
    if (from > 0)
        m_model.seek(from);
    m_playsWhenReady = true;
    if (inWindow)
        show();
    else
        showFullScreen();
    raise();
    activateWindow();
    setFocus();
    revealControls();
}

void PlayerWindow::togglePlay() {
    m_playsWhenReady = false;
    m_model.togglePlay();
}

void PlayerWindow::toggleFullScreen() {
    setWindowState(windowState() ^ Qt::WindowFullScreen);
}

void PlayerWindow::pass() {
    const double now = m_services.now();
    m_model.tick(now - std::exchange(m_lastTick, now));
}

void PlayerWindow::showChange() {
    const bool isPlaying = m_model.isPlaying();
    if (isPlaying != m_wasPlaying)
        showPlaying();
    m_feed->follow(m_model.elapsed(), isPlaying);
    takePicture();
    m_controls->showPosition(m_model.elapsed(), isPlaying);
}

void PlayerWindow::showPlaying() {
    m_wasPlaying = m_model.isPlaying();
    if (m_wasPlaying) {
        m_lastTick = m_services.now();
        m_tick.start();
        m_awake = m_services.keepAwake(QStringLiteral("Playing a slideshow"));
        if (m_music)
            m_music->play(m_model.elapsed());
        return;
    }
    m_tick.stop();
    m_awake.reset();
    if (m_music)
        m_music->pause();
    revealControls();
}

void PlayerWindow::takePicture() {
    // A picture may be told of after closing.
    const auto picture = m_feed ? m_feed->take() : std::nullopt;
    if (!picture)
        return;
    m_picture = picture->image;
    update(stage());
    if (std::exchange(m_playsWhenReady, false) && !m_model.isPlaying())
        m_model.togglePlay();
}

QRect PlayerWindow::stage() const {
    const QSize size = QSize{16, 9}.scaled(this->size(), Qt::KeepAspectRatio);
    return {QPoint{(width() - size.width()) / 2, (height() - size.height()) / 2}, size};
}

void PlayerWindow::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    painter.fillRect(rect(), Qt::black);
    if (m_picture.isNull())
        return;
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(stage(), m_picture);
}

void PlayerWindow::resizeEvent(QResizeEvent*) {
    if (!m_feed)
        return;
    const double ratio = devicePixelRatioF();
    const auto even = [ratio](int length) {
        return std::max(2, 2 * static_cast<int>(std::lround(length * ratio / 2)));
    };
    const QSize size = stage().size();
    m_feed->resize({even(size.width()), even(size.height())}, m_model.elapsed());
    const int width = std::min(widestControls, this->width() - 2 * controlsMargin);
    m_controls->setGeometry((this->width() - width) / 2, height() - controlsHeight - controlsMargin, width,
                            controlsHeight);
}

void PlayerWindow::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_MediaTogglePlayPause:
    case Qt::Key_MediaPlay:
    case Qt::Key_MediaPause:
        return togglePlay();
    case Qt::Key_Left:
    case Qt::Key_MediaPrevious:
        return m_model.previous();
    case Qt::Key_Right:
    case Qt::Key_MediaNext:
        return m_model.next();
    case Qt::Key_Home:
        return m_model.seek(0);
    case Qt::Key_F:
    case Qt::Key_F11:
        return toggleFullScreen();
    case Qt::Key_M:
        return m_controls->toggleMute();
    case Qt::Key_Escape:
        return static_cast<void>(close());
    default:
        QWidget::keyPressEvent(event);
    }
}

void PlayerWindow::mouseMoveEvent(QMouseEvent*) {
    revealControls();
}

void PlayerWindow::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && !m_controls->geometry().contains(event->pos()))
        toggleFullScreen();
}

bool PlayerWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseMove || event->type() == QEvent::FocusIn)
        revealControls();
    return QWidget::eventFilter(watched, event);
}

void PlayerWindow::revealControls() {
    unsetCursor();
    m_controls->show();
    m_hide.start();
}

void PlayerWindow::hideControls() {
    if (m_controls->isInUse())
        return m_hide.start();
    m_controls->hide();
    setCursor(Qt::BlankCursor);
}

void PlayerWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    if (!m_feed)
        return;
    m_tick.stop();
    m_hide.stop();
    m_awake.reset();
    m_feed.reset();
    double wait = 0;
    if (m_music) {
        m_music->stop();
        wait = m_music->latency() + Player::AudioPlayerController::leavingFade;
    }
    // The music ends after the picture.
    QTimer::singleShot(static_cast<int>(1000 * wait), this, [this] {
        m_music.reset();
        Q_EMIT closed();
    });
}

} // namespace Stage
