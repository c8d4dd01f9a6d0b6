// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/RandomProject.h>
#include <Roamly/Window/Sheets/SourcesManager.h>

#include <Sheets/SheetTesting.h>

#include <QTreeWidget>

namespace Sheets {
namespace {

using namespace Testing;
using namespace Qt::StringLiterals;

std::vector<SourceRow> rows() {
    return {
        {.id = Foundation::Uuid::random(),
         .kind = SourceRow::Kind::Folder,
         .name =
             "/home/ada/Pictures/2024/A very long name of a folder/and one more below it/Lisbon and Sintra",
         .photoCount = 146,
         .missingCount = 0},
        {.id = Foundation::Uuid::random(),
         .kind = SourceRow::Kind::Folder,
         .name = "/media/card/DCIM",
         .photoCount = 31,
         .missingCount = 12},
        {.id = Foundation::Uuid::random(),
         .kind = SourceRow::Kind::Album,
         .name = "日本の旅",
         .photoCount = 1,
         .missingCount = 0}};
}

QTreeWidget& list(const SourcesManager& manager) {
    return *control<QTreeWidget>(manager, u"Sources"_s);
}

TEST(SourceRows, CountThePhotosOfEachSource) {
    ProjectModel::Testing::RandomProject random{71};
    ProjectModel::Project project;
    project.sources = {{.id = random.uuid(), .ref = ProjectModel::FolderSourceRef{{}, "/photos/Lisbon"}},
                       {.id = random.uuid(), .ref = ProjectModel::AlbumSourceRef{"7", "Sintra"}},
                       {.id = random.uuid(), .ref = ProjectModel::FolderSourceRef{{}, "/photos/empty"}}};
    for (int index = 0; index < 6; ++index) {
        ProjectModel::PhotoItem photo = random.photo();
        photo.isMissing = index == 1;
        photo.sourceID.reset();
        if (index < 5)
            photo.sourceID = project.sources[index < 3 ? 0 : 1].id;
        project.photos.push_back(photo);
    }
    EXPECT_EQ(
        sourceRows(project),
        (std::vector<SourceRow>{{project.sources[0].id, SourceRow::Kind::Folder, "/photos/Lisbon", 3, 1},
                                {project.sources[1].id, SourceRow::Kind::Album, "Sintra", 2, 0},
                                {project.sources[2].id, SourceRow::Kind::Folder, "/photos/empty", 0, 0}}));
}

TEST(SourcesManager, ListsEachSource) {
    SourcesManager manager{rows(), nullptr};
    manager.open();
    EXPECT_EQ(manager.windowTitle(), u"Sources"_s);
    ASSERT_EQ(list(manager).topLevelItemCount(), 3);
    const QTreeWidgetItem* const card = list(manager).topLevelItem(1);
    EXPECT_EQ(card->text(0), u"Folder"_s);
    EXPECT_EQ(card->text(1), u"/media/card/DCIM"_s);
    EXPECT_EQ(card->text(2), u"31"_s);
    EXPECT_EQ(card->text(3), u"12"_s);
    EXPECT_EQ(list(manager).topLevelItem(2)->text(0), u"Album"_s);
    expectNamedControls(manager);
    photograph(manager, u"sources"_s);
}

TEST(SourcesManager, WishesAreAboutTheChosenSource) {
    const std::vector<SourceRow> sources = rows();
    SourcesManager manager{sources, nullptr};
    manager.open();
    QSignalSpy removals{&manager, &SourcesManager::removeRequested};
    QSignalSpy searches{&manager, &SourcesManager::locateRequested};
    QSignalSpy additions{&manager, &SourcesManager::addFolderRequested};
    EXPECT_FALSE(button(manager, u"Locate…"_s)->isEnabled()) << "nothing is missing of the first one";
    QTest::keyClick(&list(manager), Qt::Key_Down);
    EXPECT_TRUE(button(manager, u"Locate…"_s)->isEnabled());
    press(manager, u"Locate…"_s);
    press(manager, u"Remove"_s);
    press(manager, u"Add Folder…"_s);
    ASSERT_EQ(removals.count(), 1);
    ASSERT_EQ(searches.count(), 1);
    EXPECT_EQ(additions.count(), 1);
    EXPECT_EQ(removals.first().first().value<Foundation::Uuid>(), sources[1].id);
    EXPECT_EQ(searches.first().first().value<Foundation::Uuid>(), sources[1].id);
}

TEST(SourcesManager, TheChosenSourceStaysChosen) {
    std::vector<SourceRow> sources = rows();
    SourcesManager manager{sources, nullptr};
    manager.open();
    QTest::keyClick(&list(manager), Qt::Key_End);
    sources.erase(sources.begin());
    manager.showRows(sources);
    ASSERT_EQ(list(manager).topLevelItemCount(), 2);
    EXPECT_EQ(list(manager).indexOfTopLevelItem(list(manager).currentItem()), 1);
}

TEST(SourcesManager, WithoutSourcesItSaysSo) {
    SourcesManager manager{{}, nullptr};
    manager.open();
    EXPECT_TRUE(says(manager, u"No photos were imported yet. Add a folder to begin."_s));
    EXPECT_FALSE(button(manager, u"Remove"_s)->isEnabled());
    photograph(manager, u"sources-empty"_s);
    QTest::keyClick(&manager, Qt::Key_Escape);
    EXPECT_FALSE(manager.isVisible());
}

} // namespace
} // namespace Sheets
