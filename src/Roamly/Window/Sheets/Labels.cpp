// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/Labels.h>
#include <Roamly/Window/Theme/Icons.h>

#include <QEvent>
#include <QIcon>
#include <string>

namespace Sheets {

namespace {

/// Keeps the icon, so that it follows the palette.
class IconLabel : public QLabel {
public:
    IconLabel(const QIcon& icon, int side)
        : m_icon(icon)
        , m_side(side) {
        setFixedSize(side, side);
        draw();
    }

protected:
    void changeEvent(QEvent* event) override {
        QLabel::changeEvent(event);
        if (event->type() == QEvent::PaletteChange || event->type() == QEvent::EnabledChange)
            draw();
    }

private:
    void draw() {
        setPixmap(m_icon.pixmap(QSize{m_side, m_side}, devicePixelRatioF(),
                                isEnabled() ? QIcon::Normal : QIcon::Disabled));
    }

    QIcon m_icon;
    int m_side;
};

QLabel* label(const QString& text) {
    auto* const result = new QLabel{text};
    result->setTextFormat(Qt::PlainText);
    return result;
}

} // namespace

QString toText(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

std::string toUtf8(const QString& text) {
    return text.toStdString();
}

QLabel* heading(const QString& text) {
    QLabel* const result = label(text);
    QFont font = result->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    font.setWeight(QFont::DemiBold);
    result->setFont(font);
    result->setWordWrap(true);
    return result;
}

QLabel* groupTitle(const QString& text) {
    QLabel* const result = label(text);
    QFont font = result->font();
    font.setWeight(QFont::DemiBold);
    result->setFont(font);
    return result;
}

QLabel* fieldLabel(const QString& text, QWidget* control) {
    QLabel* const result = label(text);
    if (control->accessibleName().isEmpty())
        control->setAccessibleName(text);
    result->setMinimumHeight(32);
    result->setMinimumWidth(128);
    result->setBuddy(control);
    return result;
}

QFrame* divider() {
    auto* const line = new QFrame;
    line->setFrameShape(QFrame::VLine);
    line->setFrameShadow(QFrame::Plain);
    line->setForegroundRole(QPalette::Midlight);
    line->setFixedWidth(1);
    return line;
}

QLabel* sentence(const QString& text) {
    QLabel* const result = label(text);
    result->setWordWrap(true);
    return result;
}

QLabel* note(const QString& text) {
    QLabel* const result = sentence(text);
    result->setForegroundRole(QPalette::PlaceholderText);
    return result;
}

QLabel* picture(const QString& icon, int side, const QColor& colour) {
    return new IconLabel{colour.isValid() ? Theme::icon(icon, colour) : Theme::icon(icon), side};
}

} // namespace Sheets
