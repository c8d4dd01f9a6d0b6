// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/HelpPages.h>
#include <Roamly/Window/Sheets/HelpWindow.h>

#include <Sheets/SheetTesting.h>

#include <QListWidget>
#include <QRegularExpression>
#include <QTextBrowser>
#include <set>

namespace Sheets {
namespace {

using namespace Testing;
using namespace Qt::StringLiterals;

QStringList titles(const HelpWindow& help) {
    const auto* const list = control<QListWidget>(help, u"Help pages"_s);
    QStringList result;
    for (int row = 0; row < list->count(); ++row)
        result.append(list->item(row)->text());
    return result;
}

TEST(HelpPages, AreThereAndTitledAsListed) {
    QStringList names;
    for (const HelpPage& page : helpPages()) {
        names.append(page.title);
        EXPECT_TRUE(page.html.startsWith(u"<h1>"_s + page.title + u"</h1>"_s)) << page.name.toStdString();
    }
    EXPECT_EQ(names, (QStringList{u"First film"_s, u"Reviewing"_s, u"Places"_s, u"Similar photos"_s,
                                  u"Captions and privacy"_s, u"Music"_s, u"Playing"_s, u"Exporting"_s,
                                  u"Command line"_s, u"Keyboard shortcuts"_s}));
}

TEST(HelpPages, LinksLeadToPages) {
    std::set<QString> names;
    for (const HelpPage& page : helpPages())
        names.insert(page.name);
    const QRegularExpression link{u"href=\"([^\"]+)\""_s};
    int count = 0;
    for (const HelpPage& page : helpPages())
        for (auto links = link.globalMatch(page.html); links.hasNext(); ++count)
            EXPECT_TRUE(names.contains(links.next().captured(1))) << page.name.toStdString();
    EXPECT_GT(count, 0);
}

TEST(HelpPages, AreFoundByAllTheirWords) {
    EXPECT_EQ(findHelpPages({}).size(), helpPages().size());
    const auto found = findHelpPages(u"  OPENROUTER banner "_s);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front()->title, u"Captions and privacy"_s);
    EXPECT_TRUE(findHelpPages(u"h1"_s).empty()) << "marks of the page's language are no words";
}

TEST(HelpWindow, ShowsTheFirstPage) {
    HelpWindow help;
    help.show();
    EXPECT_EQ(help.windowTitle(), u"Roamly Help"_s);
    EXPECT_EQ(titles(help).size(), 10);
    EXPECT_TRUE(control<QTextBrowser>(help, u"Help page"_s)->toPlainText().startsWith(u"First film"_s));
    expectNamedControls(help);
    photograph(help, u"help"_s);
    help.showPage(u"keyboard-shortcuts"_s);
    photograph(help, u"help-shortcuts"_s);
}

TEST(HelpWindow, SearchesAndGoesOnByKeyboard) {
    HelpWindow help;
    help.show();
    auto* const search = control<QLineEdit>(help, u"Search help"_s);
    const auto* const page = control<QTextBrowser>(help, u"Help page"_s);
    QTest::keyClicks(search, u"fit to music"_s);
    EXPECT_EQ(titles(help), QStringList{u"Music"_s});
    EXPECT_TRUE(page->toPlainText().startsWith(u"Music"_s));
    search->setText(u"no such words anywhere"_s);
    EXPECT_TRUE(titles(help).isEmpty());
    EXPECT_EQ(page->toPlainText(), u"No page has these words."_s);
    search->clear();
    EXPECT_EQ(titles(help).size(), 10);
}

TEST(HelpWindow, FollowsLinksAndNames) {
    HelpWindow help;
    help.show();
    auto* const page = control<QTextBrowser>(help, u"Help page"_s);
    Q_EMIT page->anchorClicked(QUrl{u"exporting"_s});
    EXPECT_TRUE(page->toPlainText().startsWith(u"Exporting"_s));
    help.showPage(u"playing"_s);
    EXPECT_TRUE(page->toPlainText().startsWith(u"Playing"_s));
    help.showPage(u"no such page"_s);
    EXPECT_TRUE(page->toPlainText().startsWith(u"First film"_s));
}

} // namespace
} // namespace Sheets
