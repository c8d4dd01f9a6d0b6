// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/Labels.h>
#include <Roamly/Window/Sheets/SettingsPages.h>
#include <Roamly/Window/Sheets/SettingsWindow.h>
#include <Roamly/Window/Theme/Icons.h>

#include <QHBoxLayout>
#include <QListWidget>
#include <QStackedWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace Sheets {

SettingsWindow::SettingsWindow(const Document::AppSettings& settings, bool usesNativeFileDialogs,
                               const SettingsServices& services, QWidget* parent)
    : QDialog(parent)
    , m_names(new QListWidget)
    , m_pages(new QStackedWidget) {
    setWindowTitle(u"Settings"_s);
    setAccessibleName(u"Settings"_s);
    setMinimumSize(720, 520);
    m_names->setAccessibleName(u"Pages"_s);
    m_names->setFixedWidth(168);
    m_names->setFrameShape(QFrame::NoFrame);
    m_names->viewport()->setAutoFillBackground(false);
    auto* const row = new QHBoxLayout{this};
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    auto* const side = new QVBoxLayout;
    side->setContentsMargins(8, 16, 8, 8);
    side->addWidget(m_names);
    row->addLayout(side);
    row->addWidget(divider());
    row->addWidget(m_pages, 1);

    const SettingChanged changed = [this](const QString& key, const QString& text) {
        Q_EMIT settingChanged(key, text);
    };
    addPage(u"Export"_s, u"export"_s, exportPage(settings, changed));
    addPage(u"Captions"_s, u"captions"_s, captionsPage(settings, services, changed));
    addPage(u"General"_s, u"settings"_s,
            generalPage(settings, usesNativeFileDialogs, changed,
                        [this](bool usesNative) { Q_EMIT nativeFileDialogsChosen(usesNative); }));
    connect(m_names, &QListWidget::currentRowChanged, m_pages, &QStackedWidget::setCurrentIndex);
    showPage(Page::Export);
    m_names->setFocus();
}

void SettingsWindow::addPage(const QString& name, const QString& icon, QWidget* page) {
    auto* const item = new QListWidgetItem{Theme::icon(icon), name, m_names};
    item->setSizeHint({0, 40});
    m_pages->addWidget(page);
}

void SettingsWindow::showPage(Page page) {
    m_names->setCurrentRow(static_cast<int>(page));
}

} // namespace Sheets
