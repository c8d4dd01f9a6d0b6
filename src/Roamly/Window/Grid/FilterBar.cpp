// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/FilterBar.h>
#include <Roamly/Window/Theme/SearchField.h>

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>

namespace Grid {

FilterBar::FilterBar(QWidget* parent)
    : QWidget(parent)
    , m_kind(new QComboBox{this})
    , m_search(new QLineEdit{this}) {
    using Kind = PhotoFilter::Kind;
    m_kind->setAccessibleName(QStringLiteral("Filter"));
    m_kind->setToolTip(QStringLiteral("Which photos are shown"));
    const auto add = [this](const QString& text, Kind kind) {
        m_kind->addItem(text, static_cast<int>(kind));
    };
    add(QStringLiteral("All"), Kind::all);
    add(QStringLiteral("In the film"), Kind::inTheFilm);
    add(QStringLiteral("Left out"), Kind::leftOut);
    add(QStringLiteral("Without place"), Kind::withoutPlace);
    add(QStringLiteral("In groups"), Kind::inGroups);
    add(QStringLiteral("Missing"), Kind::missing);

    m_search->setAccessibleName(QStringLiteral("Search"));
    m_search->setPlaceholderText(QStringLiteral("Search captions, places, files"));
    Theme::makeSearchField(*m_search);
    m_search->setMinimumWidth(160);
    m_search->setMaximumWidth(360);
    m_search->installEventFilter(this);

    auto* row = new QHBoxLayout{this};
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(m_kind);
    row->addWidget(m_search, 1);

    const auto tell = [this] { Q_EMIT filterChanged(filter()); };
    connect(m_kind, &QComboBox::currentIndexChanged, this, tell);
    connect(m_search, &QLineEdit::textChanged, this, tell);
    connect(m_search, &QLineEdit::returnPressed, this, &FilterBar::left);
}

PhotoFilter FilterBar::filter() const {
    return {static_cast<PhotoFilter::Kind>(m_kind->currentData().toInt()), m_search->text()};
}

void FilterBar::setFilter(const PhotoFilter& wanted) {
    if (wanted == filter())
        return;
    {
        const QSignalBlocker kindBlocker{m_kind};
        const QSignalBlocker searchBlocker{m_search};
        m_kind->setCurrentIndex(m_kind->findData(static_cast<int>(wanted.kind)));
        m_search->setText(wanted.text);
    }
    Q_EMIT filterChanged(filter());
}

void FilterBar::beginSearch() {
    m_search->setFocus(Qt::ShortcutFocusReason);
    m_search->selectAll();
}

bool FilterBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_search && event->type() == QEvent::KeyPress) {
        const auto key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Escape && !m_search->text().isEmpty()) {
            m_search->clear();
            return true;
        }
        if (key == Qt::Key_Escape || key == Qt::Key_Down) {
            Q_EMIT left();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace Grid
