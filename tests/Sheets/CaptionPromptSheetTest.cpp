// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/CaptionPromptSheet.h>

#include <Sheets/SheetTesting.h>

#include <QMenu>
#include <QPlainTextEdit>

namespace Sheets {
namespace {

using namespace Testing;
using namespace Qt::StringLiterals;

TEST(CaptionPromptSheet, ExplainsTheGuidance) {
    CaptionPromptSheet sheet{{}, {}, nullptr};
    sheet.open();
    EXPECT_EQ(sheet.windowTitle(), u"AI Caption Prompt"_s);
    EXPECT_TRUE(says(
        sheet,
        u"Guidance sent to the AI with every photo, steering the tone and how the scene is described. Leave empty for a neutral, natural caption."_s));
    expectNamedControls(sheet);
    photograph(sheet, u"caption-prompt"_s);
}

TEST(CaptionPromptSheet, EachEditIsTold) {
    CaptionPromptSheet sheet{u"Short"_s, {}, nullptr};
    sheet.open();
    QSignalSpy edits{&sheet, &CaptionPromptSheet::promptEdited};
    auto* const prompt = control<QPlainTextEdit>(sheet, u"Caption prompt"_s);
    prompt->moveCursor(QTextCursor::End);
    QTest::keyClicks(prompt, u"er"_s);
    ASSERT_EQ(edits.count(), 2);
    EXPECT_EQ(edits.last().first().toString(), u"Shorter"_s);
}

TEST(CaptionPromptSheet, ExamplesFillTheField) {
    CaptionPromptSheet sheet{u"Mine"_s, {}, nullptr};
    sheet.open();
    auto* const prompt = control<QPlainTextEdit>(sheet, u"Caption prompt"_s);
    const QList<QAction*> examples = button(sheet, u"Examples"_s)->menu()->actions();
    QStringList texts;
    for (QAction* const example : examples)
        texts.append(example->text());
    EXPECT_EQ(texts, (QStringList{u"Witty and playful, like postcard captions."_s,
                                  u"Formal travel-guide voice."_s, u"Focus on the food and drinks."_s,
                                  u"Short and poetic, one vivid image each."_s}));
    examples[2]->trigger();
    EXPECT_EQ(prompt->toPlainText(), u"Focus on the food and drinks."_s);
    photograph(sheet, u"caption-prompt-filled"_s);
    prompt->undo();
    EXPECT_EQ(prompt->toPlainText(), u"Mine"_s);
}

TEST(CaptionPromptSheet, EscCloses) {
    CaptionPromptSheet sheet{{}, {}, nullptr};
    sheet.open();
    QTest::keyClick(&sheet, Qt::Key_Escape);
    EXPECT_FALSE(sheet.isVisible());
}

} // namespace
} // namespace Sheets
