// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/ExportSheet.h>

#include <Sheets/SheetTesting.h>

#include <QProgressBar>

namespace Sheets {
namespace {

using namespace Testing;
using namespace Qt::StringLiterals;
using Jobs::ExportController;

/// A sheet whose file dialog answers with `m_path`, or not at all.
class ExportSheetTest : public testing::Test {
protected:
    ExportSheet& sheet(const ExportPlan& plan = {
                           .preset = {}, .filmSeconds = 420, .photoCount = 82, .processorCount = 4}) {
        m_sheet = std::make_unique<ExportSheet>(
            plan,
            [this](QWidget*, const QString& proposed, const std::function<void(const QString&)>& chosen) {
                m_proposed = proposed;
                if (!m_path.isEmpty())
                    chosen(m_path);
            },
            nullptr);
        m_sheet->open();
        return *m_sheet;
    }

    static ExportController::State running(double progress) {
        ExportController::State state;
        state.isExporting = true;
        state.progress = progress;
        state.stageText = "Rendering video";
        return state;
    }

    static ExportController::State saved(std::size_t failedPhotos = 0) {
        ExportController::State state;
        state.stageText = "Saved";
        state.savedPath = "/home/ada/Videos/Lisbon.mov";
        for (std::size_t index = 0; index < failedPhotos; ++index)
            state.failedPhotoIDs.insert(Foundation::Uuid::random());
        return state;
    }

    std::unique_ptr<ExportSheet> m_sheet;
    QString m_path = u"/home/ada/Videos/Lisbon.mov"_s;
    QString m_proposed;
};

TEST_F(ExportSheetTest, HasItsNameAndItsChoices) {
    ExportSheet& exportSheet = sheet();
    EXPECT_EQ(exportSheet.windowTitle(), u"Export Slideshow"_s);
    EXPECT_EQ(exportSheet.accessibleName(), u"Export Slideshow"_s);
    EXPECT_TRUE(says(exportSheet, u"Export Slideshow"_s));
    const auto* const resolution = control<QComboBox>(exportSheet, u"Resolution"_s);
    const auto* const codec = control<QComboBox>(exportSheet, u"Codec"_s);
    EXPECT_EQ(resolution->itemText(0), u"1080p"_s);
    EXPECT_EQ(resolution->itemText(1), u"4K"_s);
    EXPECT_EQ(codec->itemText(0), u"H.264"_s);
    EXPECT_EQ(codec->itemText(1), u"HEVC"_s);
    EXPECT_EQ(exportSheet.windowModality(), Qt::WindowModal);
    expectNamedControls(exportSheet);
    photograph(exportSheet, u"export"_s);
}

TEST_F(ExportSheetTest, TellsTheFilmsLengthAndGuesses) {
    ExportSheet& exportSheet = sheet();
    bool hasSummary = false;
    for (const QLabel* const label : exportSheet.findChildren<QLabel*>())
        hasSummary = hasSummary || label->text().startsWith(u"82 photos · film 7:00 · about "_s);
    EXPECT_TRUE(hasSummary);
}

TEST_F(ExportSheetTest, StartsWithTheStoredChoicesAndTellsNewOnes) {
    ExportSheet& exportSheet =
        sheet({.preset = {.resolution = Export::ExportResolution::p2160, .codec = Export::ExportCodec::hevc},
               .filmSeconds = 60});
    auto* const resolution = control<QComboBox>(exportSheet, u"Resolution"_s);
    auto* const codec = control<QComboBox>(exportSheet, u"Codec"_s);
    EXPECT_EQ(resolution->currentText(), u"4K"_s);
    EXPECT_EQ(codec->currentText(), u"HEVC"_s);
    QSignalSpy resolutions{&exportSheet, &ExportSheet::resolutionChosen};
    QSignalSpy codecs{&exportSheet, &ExportSheet::codecChosen};
    QTest::keyClick(resolution, Qt::Key_Up);
    QTest::keyClick(codec, Qt::Key_Up);
    ASSERT_EQ(resolutions.count(), 1);
    ASSERT_EQ(codecs.count(), 1);
    EXPECT_EQ(resolutions.first().first().value<Export::ExportResolution>(), Export::ExportResolution::p1080);
    EXPECT_EQ(codecs.first().first().value<Export::ExportCodec>(), Export::ExportCodec::h264);
}

TEST_F(ExportSheetTest, ReturnAsksForTheFileAndExportsThere) {
    ExportSheet& exportSheet = sheet();
    QSignalSpy exports{&exportSheet, &ExportSheet::exportRequested};
    QTest::keyClick(&exportSheet, Qt::Key_Return);
    EXPECT_EQ(m_proposed, u"Slideshow.mov"_s);
    ASSERT_EQ(exports.count(), 1);
    EXPECT_EQ(exports.first().at(1).toString(), m_path);
}

TEST_F(ExportSheetTest, WithoutAFileNothingHappens) {
    m_path.clear();
    ExportSheet& exportSheet = sheet();
    QSignalSpy exports{&exportSheet, &ExportSheet::exportRequested};
    press(exportSheet, u"Export…"_s);
    EXPECT_EQ(m_proposed, u"Slideshow.mov"_s);
    EXPECT_EQ(exports.count(), 0);
}

TEST_F(ExportSheetTest, ShowsHowFarItIs) {
    ExportSheet& exportSheet = sheet();
    exportSheet.show(running(0.4), 190);
    const auto* const bar = control<QProgressBar>(exportSheet, u"Export progress"_s);
    EXPECT_EQ(bar->value() * 10, bar->maximum() * 4);
    EXPECT_TRUE(says(exportSheet, u"Rendering video"_s));
    EXPECT_TRUE(says(exportSheet, u"about 3 minutes left"_s));
    EXPECT_FALSE(button(exportSheet, u"Export…"_s)->isEnabled());
    EXPECT_FALSE(control<QComboBox>(exportSheet, u"Codec"_s)->isEnabled());
    EXPECT_FALSE(says(exportSheet, u"Saved"_s));
    expectNamedControls(exportSheet);
    photograph(exportSheet, u"export-running"_s);

    QSignalSpy cancels{&exportSheet, &ExportSheet::cancelRequested};
    press(exportSheet, u"Cancel"_s);
    EXPECT_EQ(cancels.count(), 1);
    ExportController::State stopping = running(0.4);
    stopping.isStopping = true;
    exportSheet.show(stopping);
    EXPECT_FALSE(button(exportSheet, u"Cancel"_s)->isEnabled());
}

TEST_F(ExportSheetTest, CancellingShowsNoSaved) {
    ExportSheet& exportSheet = sheet();
    ExportController::State cancelled;
    cancelled.errorText = "Export cancelled.";
    cancelled.wasCancelled = true;
    exportSheet.show(cancelled);
    EXPECT_TRUE(says(exportSheet, u"Export cancelled."_s));
    EXPECT_FALSE(says(exportSheet, u"Saved"_s));
    EXPECT_TRUE(button(exportSheet, u"Export…"_s)->isEnabled());
}

TEST_F(ExportSheetTest, AFailureIsTold) {
    ExportSheet& exportSheet = sheet();
    ExportController::State failed;
    failed.errorText = "Export failed: The disk is full.";
    exportSheet.show(failed);
    EXPECT_TRUE(says(exportSheet, u"Export failed: The disk is full."_s));
    photograph(exportSheet, u"export-failed"_s);
}

TEST_F(ExportSheetTest, TheFinishedFilmIsShownInFilesAndPlayed) {
    ExportSheet& exportSheet = sheet();
    exportSheet.show(saved(2));
    EXPECT_TRUE(says(exportSheet, u"Saved"_s));
    EXPECT_TRUE(says(exportSheet, u"2 photos couldn't be loaded and appear black in the video."_s));
    photograph(exportSheet, u"export-saved"_s);
    QSignalSpy shows{&exportSheet, &ExportSheet::showInFilesRequested};
    QSignalSpy plays{&exportSheet, &ExportSheet::playRequested};
    press(exportSheet, u"Show in Files"_s);
    press(exportSheet, u"Play"_s);
    ASSERT_EQ(shows.count(), 1);
    ASSERT_EQ(plays.count(), 1);
    EXPECT_EQ(shows.first().first().toString(), u"/home/ada/Videos/Lisbon.mov"_s);
    EXPECT_EQ(plays.first().first().toString(), u"/home/ada/Videos/Lisbon.mov"_s);
}

TEST_F(ExportSheetTest, SaysNothingOfFailedPhotosWhenThereAreNone) {
    ExportSheet& exportSheet = sheet();
    exportSheet.show(saved(1));
    EXPECT_TRUE(says(exportSheet, u"1 photo couldn't be loaded and appear black in the video."_s));
    exportSheet.show(saved(0));
    EXPECT_FALSE(says(exportSheet, u"1 photo couldn't be loaded and appear black in the video."_s));
}

TEST_F(ExportSheetTest, EscLeavesARunningExportAlone) {
    ExportSheet& exportSheet = sheet();
    exportSheet.show(running(0.5));
    QSignalSpy cancels{&exportSheet, &ExportSheet::cancelRequested};
    QTest::keyClick(&exportSheet, Qt::Key_Escape);
    EXPECT_FALSE(exportSheet.isVisible());
    EXPECT_EQ(cancels.count(), 0);
}

TEST_F(ExportSheetTest, NamesThePhotosThatWillBeBlack) {
    ExportSheet& exportSheet = sheet({.preset = {},
                                      .filmSeconds = 60,
                                      .photoCount = 20,
                                      .missingPhotos = {u"IMG_1.jpg"_s, u"京都.jpg"_s}});
    EXPECT_TRUE(
        says(exportSheet, u"2 photos can’t be found and will be black in the film: IMG_1.jpg, 京都.jpg."_s));
    photograph(exportSheet, u"export-missing"_s);
}

TEST(MissingPhotos, AreNamedUpToFive) {
    EXPECT_EQ(missingPhotosSentence({}), QString{});
    EXPECT_EQ(missingPhotosSentence({u"a"_s}), u"1 photo can’t be found and will be black in the film: a."_s);
    EXPECT_EQ(missingPhotosSentence({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s}),
              u"7 photos can’t be found and will be black in the film: a, b, c, d, e and 2 more."_s);
}

} // namespace
} // namespace Sheets
