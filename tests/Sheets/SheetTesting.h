// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Theme/Theme.h>

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <cstdlib>

/// What the tests of sheets share: finding controls as a user or a screen reader does, and taking pictures.
namespace Sheets::Testing {

/// The control of that accessible name, or button of that text; fails the test when there is none.
template <typename Widget>
Widget* control(const QWidget& sheet, const QString& name) {
    for (Widget* const widget : sheet.findChildren<Widget*>()) {
        if (widget->accessibleName() == name)
            return widget;
        if (const auto* const button = qobject_cast<const QAbstractButton*>(widget);
            button && button->text() == name)
            return widget;
    }
    ADD_FAILURE() << "there is no " << name.toStdString();
    return nullptr;
}

inline QPushButton* button(const QWidget& sheet, const QString& text) {
    return control<QPushButton>(sheet, text);
}

inline void press(const QWidget& sheet, const QString& text) {
    if (QPushButton* const found = button(sheet, text))
        QTest::mouseClick(found, Qt::LeftButton);
}

/// Whether a label with that very text is shown.
inline bool says(const QWidget& sheet, const QString& text) {
    for (const QLabel* const label : sheet.findChildren<QLabel*>())
        if (label->text() == text && label->isVisibleTo(&sheet))
            return true;
    return false;
}

/// Every control that takes the keyboard has a name or a text.
inline void expectNamedControls(const QWidget& sheet) {
    for (const QWidget* const widget : sheet.findChildren<QWidget*>()) {
        if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisibleTo(&sheet))
            continue;
        // Parts of a control, which is named itself.
        if (qobject_cast<const QAbstractSpinBox*>(widget->parentWidget()) ||
            qobject_cast<const QComboBox*>(widget->parentWidget()) ||
            widget->objectName().startsWith(QStringLiteral("qt_")))
            continue;
        const auto* const asButton = qobject_cast<const QAbstractButton*>(widget);
        if (asButton &&
            (!asButton->text().isEmpty() || qobject_cast<const QLineEdit*>(widget->parentWidget())))
            continue;
        const auto* const asLabel = qobject_cast<const QLabel*>(widget);
        EXPECT_TRUE(asLabel || !widget->accessibleName().isEmpty()) << widget->metaObject()->className();
    }
}

/// Pictures of a widget in light and dark, in the folder that ROAMLY_PICTURES names, if any.
inline void photograph(QWidget& widget, const QString& name) {
    const char* const folder = std::getenv("ROAMLY_PICTURES");
    if (!folder)
        return;
    auto& application = *qobject_cast<QApplication*>(QCoreApplication::instance());
    for (const Theme::Scheme scheme : {Theme::Scheme::Dark, Theme::Scheme::Light}) {
        Theme::apply(application, scheme);
        widget.ensurePolished();
        QCoreApplication::processEvents();
        const QString suffix =
            scheme == Theme::Scheme::Dark ? QStringLiteral("dark") : QStringLiteral("light");
        EXPECT_TRUE(widget.grab().save(
            QStringLiteral("%1/%2-%3.png").arg(QString::fromLocal8Bit(folder), name, suffix)));
    }
}

} // namespace Sheets::Testing
