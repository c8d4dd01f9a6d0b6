// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/RandomProject.h>
#include <Roamly/Window/Sheets/KnownPlaces.h>
#include <Roamly/Window/Sheets/PlaceSheet.h>

#include <Sheets/SheetTesting.h>

#include <QCompleter>

namespace Sheets {
namespace {

using namespace Testing;
using namespace Qt::StringLiterals;

KnownPlaces known() {
    return {.cities = {u"Lisbon"_s, u"Sintra"_s},
            .countries = {u"Portugal"_s},
            .countryOfCity = {{u"Lisbon"_s, u"Portugal"_s}, {u"Sintra"_s, u"Portugal"_s}}};
}

TEST(KnownPlaces, AreTheProjectsByFrequency) {
    ProjectModel::Testing::RandomProject random{72};
    ProjectModel::Project project;
    using Text = std::optional<std::string>;
    for (const auto& [city, country] : std::vector<std::pair<Text, Text>>{{"Porto", "Portugal"},
                                                                          {"Lisbon", "Portugal"},
                                                                          {"Lisbon", "Portugal"},
                                                                          {"Lisbon", "Spain"},
                                                                          {"Paris", std::nullopt},
                                                                          {std::nullopt, "Spain"},
                                                                          {"", ""}}) {
        ProjectModel::PhotoItem photo = random.photo();
        photo.location = ProjectModel::ResolvedLocation{city, country, ProjectModel::Provenance::user};
        project.photos.push_back(photo);
    }
    const KnownPlaces places = knownPlaces(project);
    EXPECT_EQ(places.cities, (QStringList{u"Lisbon"_s, u"Paris"_s, u"Porto"_s}));
    EXPECT_EQ(places.countries, (QStringList{u"Portugal"_s, u"Spain"_s}));
    EXPECT_EQ(places.countryOfCity,
              (std::map<QString, QString>{{u"Lisbon"_s, u"Portugal"_s}, {u"Porto"_s, u"Portugal"_s}}));
}

TEST(PlaceSheet, TellsThePlaceAsTyped) {
    PlaceSheet sheet{3, {}, {}, known(), nullptr};
    sheet.open();
    EXPECT_TRUE(says(
        sheet, u"The place of 3 photos, as the film will show it. Leave both fields empty for no place."_s));
    QSignalSpy places{&sheet, &PlaceSheet::placeChosen};
    QTest::keyClicks(control<QLineEdit>(sheet, u"City"_s), u"Évora"_s);
    QTest::keyClicks(control<QLineEdit>(sheet, u"Country"_s), u"Portugal"_s);
    expectNamedControls(sheet);
    photograph(sheet, u"place"_s);
    QTest::keyClick(&sheet, Qt::Key_Return);
    ASSERT_EQ(places.count(), 1);
    EXPECT_EQ(places.first().at(0).toString(), u"Évora"_s);
    EXPECT_EQ(places.first().at(1).toString(), u"Portugal"_s);
    EXPECT_FALSE(sheet.isVisible());
}

TEST(PlaceSheet, CompletesFromTheProjectsPlaces) {
    PlaceSheet sheet{1, {}, {}, known(), nullptr};
    sheet.open();
    const QCompleter* const completer = control<QLineEdit>(sheet, u"City"_s)->completer();
    ASSERT_NE(completer, nullptr);
    EXPECT_EQ(completer->model()->rowCount(), 2);
    EXPECT_EQ(completer->caseSensitivity(), Qt::CaseInsensitive);
}

TEST(PlaceSheet, AKnownCityBringsItsCountry) {
    PlaceSheet sheet{1, {}, {}, known(), nullptr};
    sheet.open();
    auto* const city = control<QLineEdit>(sheet, u"City"_s);
    auto* const country = control<QLineEdit>(sheet, u"Country"_s);
    city->setText(u"Sintra"_s);
    EXPECT_EQ(country->text(), u"Portugal"_s);
    city->setText(u"Sint"_s);
    EXPECT_EQ(country->text(), QString{});
}

TEST(PlaceSheet, ACountryThatWasTypedStays) {
    PlaceSheet sheet{1, {}, {}, known(), nullptr};
    sheet.open();
    auto* const country = control<QLineEdit>(sheet, u"Country"_s);
    QTest::keyClicks(country, u"Brazil"_s);
    control<QLineEdit>(sheet, u"City"_s)->setText(u"Lisbon"_s);
    EXPECT_EQ(country->text(), u"Brazil"_s);
}

TEST(PlaceSheet, EscChangesNothing) {
    PlaceSheet sheet{1, u"Lisbon"_s, u"Portugal"_s, known(), nullptr};
    sheet.open();
    EXPECT_EQ(control<QLineEdit>(sheet, u"City"_s)->text(), u"Lisbon"_s);
    QSignalSpy places{&sheet, &PlaceSheet::placeChosen};
    QTest::keyClick(&sheet, Qt::Key_Escape);
    EXPECT_EQ(places.count(), 0);
    EXPECT_FALSE(sheet.isVisible());
}

} // namespace
} // namespace Sheets
