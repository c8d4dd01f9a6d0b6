// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/AlbumPicker.h>

#include <Sheets/SheetTesting.h>

#include <QTreeWidget>

namespace Sheets {
namespace {

using namespace Testing;
using namespace Qt::StringLiterals;

QImage cover(const QColor& colour) {
    QImage image{120, 80, QImage::Format_RGB32};
    image.fill(colour);
    return image;
}

std::vector<LibraryChoice> libraries() {
    return {{.name = u"Shotwell"_s,
             .albums = {{u"s1"_s, u"Lisbon 2024"_s, 146, cover(QColor{0x40, 0x80, 0xc0})},
                        {u"s2"_s, u"Sintra"_s, 1, {}}}},
            {.name = u"digiKam"_s,
             .albums = {{u"d1"_s, u"日本の旅"_s, 1200, cover(QColor{0xc0, 0x60, 0x40})},
                        {u"d2"_s, QString(300, u'x'), 12, {}}}}};
}

QTreeWidget& list(const AlbumPicker& picker) {
    return *control<QTreeWidget>(picker, u"Albums"_s);
}

TEST(AlbumPicker, ListsTheAlbumsOfEachLibrary) {
    AlbumPicker picker{libraries(), nullptr};
    picker.open();
    EXPECT_EQ(picker.windowTitle(), u"Choose an Album"_s);
    ASSERT_EQ(list(picker).topLevelItemCount(), 2);
    EXPECT_EQ(list(picker).topLevelItem(0)->text(0), u"Shotwell"_s);
    EXPECT_EQ(list(picker).topLevelItem(0)->child(0)->text(1), u"146 photos"_s);
    EXPECT_EQ(list(picker).topLevelItem(0)->child(1)->text(1), u"1 photo"_s);
    EXPECT_FALSE(button(picker, u"Import"_s)->isEnabled());
    expectNamedControls(picker);
    photograph(picker, u"albums"_s);
}

TEST(AlbumPicker, ImportsWhatIsChosenInTheListsOrder) {
    AlbumPicker picker{libraries(), nullptr};
    picker.open();
    QSignalSpy choices{&picker, &AlbumPicker::albumsChosen};
    list(picker).topLevelItem(1)->child(0)->setSelected(true);
    list(picker).topLevelItem(0)->child(0)->setSelected(true);
    press(picker, u"Import"_s);
    ASSERT_EQ(choices.count(), 1);
    EXPECT_EQ(choices.first().first().toStringList(), (QStringList{u"s1"_s, u"d1"_s}));
    EXPECT_FALSE(picker.isVisible());
}

TEST(AlbumPicker, TheSearchLeavesOnlyWhatMatches) {
    AlbumPicker picker{libraries(), nullptr};
    picker.open();
    list(picker).topLevelItem(1)->child(0)->setSelected(true);
    QTest::keyClicks(control<QLineEdit>(picker, u"Search albums"_s), u"LISB"_s);
    EXPECT_FALSE(list(picker).topLevelItem(0)->child(0)->isHidden());
    EXPECT_TRUE(list(picker).topLevelItem(0)->child(1)->isHidden());
    EXPECT_TRUE(list(picker).topLevelItem(1)->isHidden());
    EXPECT_FALSE(button(picker, u"Import"_s)->isEnabled()) << "a hidden album is chosen no more";
}

TEST(AlbumPicker, WithoutLibrariesItSaysThatNoneWasFound) {
    AlbumPicker picker{{}, nullptr};
    picker.open();
    EXPECT_TRUE(says(picker, u"No photo library found"_s));
    EXPECT_TRUE(says(picker, u"Roamly looks for the libraries of Shotwell and digiKam and found none."_s));
    EXPECT_FALSE(button(picker, u"Import"_s)->isVisible());
    photograph(picker, u"albums-none"_s);
    QTest::keyClick(&picker, Qt::Key_Escape);
    EXPECT_FALSE(picker.isVisible());
}

} // namespace
} // namespace Sheets
