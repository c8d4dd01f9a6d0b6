// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/HelpPages.h>
#include <Roamly/Window/Sheets/HelpWindow.h>
#include <Roamly/Window/Sheets/Labels.h>
#include <Roamly/Window/Theme/Colours.h>
#include <Roamly/Window/Theme/SearchField.h>

#include <QEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QShortcut>
#include <QTextBrowser>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace Sheets {

namespace {

constexpr int nameRole = Qt::UserRole;

QString pageStyle(const QPalette& palette) {
    const Theme::Colours colours = Theme::colours(palette);
    return u"h1 { font-size: x-large; font-weight: 600; margin-top: 0; margin-bottom: 8px; }"
           u"h2 { font-size: large; font-weight: 600; margin-top: 20px; margin-bottom: 4px; }"
           u"p, li { margin-top: 6px; margin-bottom: 6px; line-height: 135%; }"
           u"td, th { padding: 4px 16px 4px 0; } th { text-align: left; font-weight: 600; }"
           u"code { background-color: %1; } a { color: %2; text-decoration: none; }"_s.arg(
               colours.tile.name(), palette.color(QPalette::Link).name());
}

} // namespace

HelpWindow::HelpWindow(QWidget* parent)
    : QDialog(parent)
    , m_search(new QLineEdit)
    , m_list(new QListWidget)
    , m_page(new QTextBrowser) {
    setWindowTitle(u"Roamly Help"_s);
    setAccessibleName(u"Roamly Help"_s);
    setMinimumSize(720, 520);
    resize(860, 640);
    m_search->setAccessibleName(u"Search help"_s);
    m_search->setPlaceholderText(u"Search help"_s);
    Theme::makeSearchField(*m_search);
    m_list->setAccessibleName(u"Help pages"_s);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->viewport()->setAutoFillBackground(false);
    m_page->setAccessibleName(u"Help page"_s);
    m_page->setFrameShape(QFrame::NoFrame);
    m_page->setOpenLinks(false);
    m_page->document()->setDocumentMargin(24);
    m_page->setFocusPolicy(Qt::StrongFocus);

    auto* const side = new QVBoxLayout;
    side->setContentsMargins(8, 8, 8, 8);
    side->setSpacing(8);
    side->addWidget(m_search);
    side->addWidget(m_list, 1);
    auto* const sideArea = new QWidget;
    sideArea->setLayout(side);
    sideArea->setFixedWidth(232);
    auto* const row = new QHBoxLayout{this};
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(sideArea);
    row->addWidget(divider());
    row->addWidget(m_page, 1);

    connect(m_search, &QLineEdit::textChanged, this, &HelpWindow::listPages);
    connect(m_list, &QListWidget::currentRowChanged, this, &HelpWindow::showCurrent);
    connect(m_page, &QTextBrowser::anchorClicked, this, [this](const QUrl& link) { showPage(link.path()); });
    connect(new QShortcut{QKeySequence::Find, this}, &QShortcut::activated, m_search, [this] {
        m_search->setFocus();
        m_search->selectAll();
    });
    listPages({});
    m_list->setFocus();
}

void HelpWindow::listPages(const QString& words) {
    const QString before =
        m_list->currentItem() ? m_list->currentItem()->data(nameRole).toString() : QString{};
    {
        const QSignalBlocker quiet{m_list};
        m_list->clear();
        for (const HelpPage* const page : findHelpPages(words)) {
            auto* const item = new QListWidgetItem{page->title, m_list};
            item->setData(nameRole, page->name);
            item->setSizeHint({0, 32});
            if (page->name == before)
                m_list->setCurrentItem(item);
        }
        if (m_list->currentRow() < 0)
            m_list->setCurrentRow(0);
    }
    showCurrent();
}

void HelpWindow::showPage(const QString& name) {
    m_search->clear();
    for (int row = 0; row < m_list->count(); ++row)
        if (m_list->item(row)->data(nameRole).toString() == name)
            return m_list->setCurrentRow(row);
    m_list->setCurrentRow(0);
}

void HelpWindow::showCurrent() {
    m_page->document()->setDefaultStyleSheet(pageStyle(palette()));
    if (!m_list->currentItem()) {
        m_page->setHtml(u"<p>No page has these words.</p>"_s);
        return;
    }
    const QString name = m_list->currentItem()->data(nameRole).toString();
    for (const HelpPage& page : helpPages())
        if (page.name == name)
            m_page->setHtml(page.html);
}

void HelpWindow::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showCurrent();
}

} // namespace Sheets
