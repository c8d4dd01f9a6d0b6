// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Stage/PlayerControls.h>
#include <Roamly/Window/Theme/Icons.h>
#include <Roamly/Window/Theme/Palettes.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QToolButton>
#include <utility>

namespace Stage {

namespace {

const QColor ground{18, 18, 18, 216};

void dress(QToolButton& button, const QString& name, const QString& icon, const QString& key) {
    button.setAccessibleName(name);
    button.setToolTip(key.isEmpty() ? name : QStringLiteral("%1 (%2)").arg(name, key));
    button.setIcon(Theme::icon(icon, Qt::white));
}

} // namespace

PlayerControls::PlayerControls(double duration, std::vector<ChapterMark> chapters, bool hasMusic,
                               QWidget* parent)
    : QWidget(parent)
    , m_duration(duration) {
    setAccessibleName(QStringLiteral("Controls"));
    setLayoutDirection(Qt::LeftToRight);
    // On a picture there is no light and dark.
    setPalette(Theme::palette(Theme::Scheme::Dark, Theme::defaultAccent()));
    setMouseTracking(true);

    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 8, 12, 8);
    layout->setSpacing(4);
    auto* const previous =
        addButton(QStringLiteral("Previous"), QStringLiteral("previous"), QStringLiteral("Left"));
    m_play = addButton(QStringLiteral("Play"), QStringLiteral("play"), QStringLiteral("Space"));
    auto* const next = addButton(QStringLiteral("Next"), QStringLiteral("next"), QStringLiteral("Right"));
    layout->addSpacing(8);
    m_slider = new PositionSlider(duration, std::move(chapters), this);
    m_slider->setFocusPolicy(Qt::TabFocus);
    layout->addWidget(m_slider, 1);
    m_time = new QLabel(this);
    m_time->setAlignment(Qt::AlignCenter);
    m_time->setAccessibleName(QStringLiteral("Time"));
    const QString longest = QStringLiteral("%1 / %1").arg(timeText(duration));
    m_time->setMinimumWidth(m_time->fontMetrics().horizontalAdvance(longest) + 16);
    layout->addWidget(m_time);
    layout->addSpacing(4);
    m_mute = addButton(QStringLiteral("Mute"), QStringLiteral("sound"), QStringLiteral("M"));
    m_mute->setCheckable(true);
    m_mute->setEnabled(hasMusic);
    if (!hasMusic)
        m_mute->setToolTip(QStringLiteral("This film has no music"));
    auto* const close = addButton(QStringLiteral("Close"), QStringLiteral("close"), QStringLiteral("Esc"));

    connect(previous, &QToolButton::clicked, this, &PlayerControls::previousWanted);
    connect(m_play, &QToolButton::clicked, this, &PlayerControls::playWanted);
    connect(next, &QToolButton::clicked, this, &PlayerControls::nextWanted);
    connect(m_slider, &PositionSlider::wanted, this, &PlayerControls::positionWanted);
    connect(m_mute, &QToolButton::toggled, this, [this](bool isMuted) {
        m_mute->setIcon(Theme::icon(isMuted ? QStringLiteral("mute") : QStringLiteral("sound"), Qt::white));
        Q_EMIT muteWanted(isMuted);
    });
    connect(close, &QToolButton::clicked, this, &PlayerControls::closeWanted);
    showPosition(0, false);
}

QToolButton* PlayerControls::addButton(const QString& name, const QString& icon, const QString& key) {
    auto* const button = new QToolButton(this);
    dress(*button, name, icon, key);
    button->setAutoRaise(true);
    button->setIconSize({24, 24});
    button->setFixedSize(40, 40);
    // Space is the window's until somebody comes here by Tab.
    button->setFocusPolicy(Qt::TabFocus);
    layout()->addWidget(button);
    return button;
}

void PlayerControls::showPosition(double time, bool isPlaying) {
    m_slider->show(time);
    m_time->setText(QStringLiteral("%1 / %2").arg(timeText(time), timeText(m_duration)));
    if (std::exchange(m_isPlaying, isPlaying) == isPlaying)
        return;
    dress(*m_play, isPlaying ? QStringLiteral("Pause") : QStringLiteral("Play"),
          isPlaying ? QStringLiteral("pause") : QStringLiteral("play"), QStringLiteral("Space"));
}

bool PlayerControls::isInUse() const {
    return m_slider->isSliderDown() || (focusWidget() && focusWidget()->hasFocus());
}

void PlayerControls::toggleMute() {
    if (m_mute->isEnabled())
        m_mute->toggle();
}

void PlayerControls::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(rect(), 12, 12);
}

} // namespace Stage
