// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/Notices.h>

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <algorithm>

namespace Shell {

std::chrono::milliseconds noticeDuration(const QString& text) {
    using namespace std::chrono_literals;
    // People read about 15 characters a second; the first hundred are within the 6 s.
    const auto more = std::max<qsizetype>(0, text.size() - 100);
    return 6000ms + more * 65ms;
}

Notices::Notices(QWidget* parent)
    : QFrame(parent)
    , m_text(new QLabel(this)) {
    // Dark on light and on dark alike, as a thing that lies over the window.
    setStyleSheet(QStringLiteral("Shell--Notices { background: #323232; border: 1px solid #4a4a4a;"
                                 " border-radius: 6px; }"
                                 "QLabel { color: #ffffff; }"));
    setAccessibleName(QStringLiteral("Notice"));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setAlignment(Qt::AlignCenter);
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(16, 12, 16, 12);
    layout->addWidget(m_text);
    m_end.setSingleShot(true);
    connect(&m_end, &QTimer::timeout, this, &QWidget::hide);
    parent->installEventFilter(this);
    hide();
}

QString Notices::text() const {
    return isHidden() ? QString{} : m_text->text();
}

void Notices::show(const QString& text) {
    m_text->setText(text);
    m_text->setAccessibleName(text);
    setAccessibleDescription(text);
    place();
    raise();
    QFrame::show();
    m_end.start(noticeDuration(text));
    announce();
}

bool Notices::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Resize)
        place();
    return QFrame::eventFilter(watched, event);
}

void Notices::place() {
    const QWidget& over = *parentWidget();
    const int widest = std::max(160, std::min(640, over.width() - 48));
    const QMargins margins = layout()->contentsMargins();
    const int chrome = margins.left() + margins.right() + 2;
    const QRect natural = m_text->fontMetrics().boundingRect(QRect{0, 0, widest - chrome, 10000},
                                                             Qt::TextWordWrap, m_text->text());
    const int width = std::min(widest, natural.width() + chrome + 8);
    const int height = natural.height() + margins.top() + margins.bottom() + 2;
    setGeometry((over.width() - width) / 2, over.height() - height - 24, width, height);
}

void Notices::announce() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent event{this, m_text->text()};
#else
    QAccessibleEvent event{this, QAccessible::Alert};
#endif
    QAccessible::updateAccessibility(&event);
}

} // namespace Shell
