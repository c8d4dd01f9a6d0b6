// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Stage/PositionSlider.h>

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <utility>

namespace Stage {

namespace {

/// From the widget's side to the end of the groove: half the handle and its ring.
constexpr double margin = 10;
constexpr double grooveHeight = 4;
constexpr double handleRadius = 7;
/// What an arrow key and a page key go, in milliseconds.
constexpr int step = 5000;
constexpr int page = 30000;

} // namespace

QString timeText(double seconds) {
    const auto whole = static_cast<long long>(std::max(0.0, seconds));
    const auto twoDigits = [](long long number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    if (whole < 3600)
        return QStringLiteral("%1:%2").arg(whole / 60).arg(twoDigits(whole % 60));
    return QStringLiteral("%1:%2:%3")
        .arg(whole / 3600)
        .arg(twoDigits(whole / 60 % 60), twoDigits(whole % 60));
}

PositionSlider::PositionSlider(double duration, std::vector<ChapterMark> chapters, QWidget* parent)
    : QSlider(Qt::Horizontal, parent)
    , m_chapters(std::move(chapters)) {
    setAccessibleName(QStringLiteral("Position"));
    setRange(0, static_cast<int>(std::lround(std::min(duration, 1e6) * 1000)));
    setSingleStep(step);
    setPageStep(page);
    setMouseTracking(true);
    // A wheel or an assistive program changes the value by an action of its own.
    connect(this, &QSlider::actionTriggered, this, [this] { Q_EMIT wanted(sliderPosition() / 1000.0); });
}

QSize PositionSlider::sizeHint() const {
    return {240, 32};
}

void PositionSlider::show(double time) {
    if (isSliderDown())
        return;
    setValue(static_cast<int>(time * 1000));
    setAccessibleDescription(QStringLiteral("%1 of %2").arg(placeText(time), timeText(maximum() / 1000.0)));
}

double PositionSlider::xOf(double value) const {
    const double length = width() - 2 * margin;
    return margin + (maximum() > 0 ? length * value / maximum() : 0);
}

int PositionSlider::valueAt(double x) const {
    const double length = std::max(1.0, width() - 2 * margin);
    return static_cast<int>(std::lround(std::clamp((x - margin) / length, 0.0, 1.0) * maximum()));
}

QString PositionSlider::placeText(double time) const {
    const auto next =
        std::ranges::find_if(m_chapters, [time](const ChapterMark& chapter) { return chapter.start > time; });
    const QString clock = timeText(time);
    return next == m_chapters.begin() ? clock : QStringLiteral("%1, %2").arg((next - 1)->title, clock);
}

void PositionSlider::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double middle = height() / 2.0;
    const double here = xOf(sliderPosition());
    const auto bar = [&](double from, double to, const QColor& colour) {
        if (to <= from)
            return;
        painter.setBrush(colour);
        painter.drawRoundedRect(QRectF{from, middle - grooveHeight / 2, to - from, grooveHeight}, 2, 2);
    };
    // A chapter is a piece of the groove; gaps mark where they begin.
    std::vector<double> edges{xOf(0)};
    for (const ChapterMark& chapter : m_chapters) {
        if (chapter.start > 0 && chapter.start * 1000 < maximum())
            edges.push_back(xOf(chapter.start * 1000));
    }
    edges.push_back(xOf(maximum()));
    for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
        const double from = edges[i] + (i > 0 ? 1 : 0);
        const double to = edges[i + 1] - (i + 2 < edges.size() ? 1 : 0);
        bar(from, to, QColor{255, 255, 255, 90});
        bar(from, std::min(to, here), Qt::white);
    }
    if (hasFocus()) {
        painter.setBrush(QColor{255, 255, 255, 90});
        painter.drawEllipse(QPointF{here, middle}, handleRadius + 3, handleRadius + 3);
    }
    painter.setBrush(Qt::white);
    painter.drawEllipse(QPointF{here, middle}, handleRadius, handleRadius);
}

void PositionSlider::follow(const QMouseEvent& event) {
    setSliderPosition(valueAt(event.position().x()));
    Q_EMIT wanted(sliderPosition() / 1000.0);
}

void PositionSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return event->ignore();
    setSliderDown(true);
    follow(*event);
    event->accept();
}

void PositionSlider::mouseMoveEvent(QMouseEvent* event) {
    if (isSliderDown())
        follow(*event);
    // The window wants to know that the pointer moves.
    event->ignore();
}

void PositionSlider::mouseReleaseEvent(QMouseEvent* event) {
    setSliderDown(false);
    event->accept();
}

void PositionSlider::keyPressEvent(QKeyEvent* event) {
    // Going to the beginning and playing are the window's keys, wherever the keyboard is.
    if (event->key() == Qt::Key_Home)
        return event->ignore();
    QSlider::keyPressEvent(event);
}

bool PositionSlider::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QSlider::event(event);
    const auto& help = static_cast<const QHelpEvent&>(*event);
    QToolTip::showText(help.globalPos(), placeText(valueAt(help.pos().x()) / 1000.0), this);
    return true;
}

} // namespace Stage
