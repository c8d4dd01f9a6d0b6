// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/Words.h>
#include <Roamly/Document/CaptionProvider.h>
#include <Roamly/Window/Sheets/Labels.h>
#include <Roamly/Window/Sheets/SettingsWindow.h>

#include <Sheets/SheetTesting.h>

#include <QCheckBox>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <map>
#include <vector>

namespace Sheets {
namespace {

using namespace Testing;
using namespace Qt::StringLiterals;

class SettingsWindowTest : public testing::Test {
protected:
    SettingsWindow& window(const Document::AppSettings& settings = {}) {
        const SettingsServices services{
            .keyStore = {.load =
                             [this](std::function<void(const QString&)> done) { m_loaded = std::move(done); },
                         .save =
                             [this](const QString& key, std::function<void(const QString&)> done) {
                                 m_savedKeys.append(key);
                                 m_saved.push_back(std::move(done));
                             }},
            .testOllama =
                [this](const QString& baseURL, const QString& model,
                       std::function<void(const ConnectionStatus&)> done) {
                    m_tested = {baseURL, model};
                    m_tests.push_back(std::move(done));
                },
            .testOpenRouter =
                [this](const QString& key, const QString& model,
                       std::function<void(const ConnectionStatus&)> done) {
                    m_tested = {key, model};
                    m_tests.push_back(std::move(done));
                },
        };
        m_window = std::make_unique<SettingsWindow>(settings, true, services);
        QObject::connect(m_window.get(), &SettingsWindow::settingChanged, m_window.get(),
                         [this](const QString& key, const QString& text) { m_changes[key] = text; });
        m_window->show();
        return *m_window;
    }

    /// The "Test Connection" button of a backend, and the status beside it.
    QPushButton* testButton(const QString& backend) {
        for (auto* const each : m_window->findChildren<QPushButton*>())
            if (each->text() == u"Test Connection"_s && each->accessibleDescription() == backend)
                return each;
        return nullptr;
    }
    QString status(const QString& backend) {
        return testButton(backend)->parentWidget()->findChild<QLabel*>(u"connectionStatus"_s)->text();
    }
    /// The fields called "Model" and the like are told apart by their group.
    template <typename Widget>
    Widget* inGroup(const QString& group, const QString& name) {
        for (QWidget* const each : m_window->findChildren<QWidget*>())
            if (each->accessibleName() == group && each->inherits("Sheets::SettingsGroup"))
                return control<Widget>(*each, name);
        ADD_FAILURE() << "there is no group " << group.toStdString();
        return nullptr;
    }

    std::unique_ptr<SettingsWindow> m_window;
    std::map<QString, QString> m_changes;
    std::function<void(const QString&)> m_loaded;
    QStringList m_savedKeys;
    std::vector<std::function<void(const QString&)>> m_saved;
    QStringList m_tested;
    std::vector<std::function<void(const ConnectionStatus&)>> m_tests;
};

TEST_F(SettingsWindowTest, HasTheDescribedGroupsAndLabels) {
    SettingsWindow& settings = window();
    EXPECT_EQ(settings.windowTitle(), u"Settings"_s);
    for (
        const QString& text :
        {u"Export"_s, u"Seconds per photo: "_s, u"Chapter titles"_s, u"Default resolution"_s,
         u"Default codec"_s, u"AI providers"_s, u"Default provider"_s,
         toText(ProjectModel::Words::providersNote), u"Ollama (local)"_s, u"Base URL"_s, u"Model"_s,
         u"Use a vision model so captions describe the photo, e.g. llava or llama3.2-vision. Pull it first: `ollama pull llava`."_s,
         u"API key"_s, u"Use a vision model, e.g. openai/gpt-4o-mini or google/gemini-flash-1.5."_s,
         u"Privacy: OpenRouter is a **cloud** service. Every photo you caption is uploaded to OpenRouter and the model provider you choose — the images leave your computer. Don’t use it for photos you want to keep private; use Built-in or Ollama for that."_s}) {
        bool isThere = false;
        for (const QLabel* const label : settings.findChildren<QLabel*>())
            isThere = isThere || label->text() == text;
        EXPECT_TRUE(isThere) << text.toStdString();
    }
    EXPECT_NE(control<QCheckBox>(settings, u"Ken Burns motion"_s), nullptr);
    EXPECT_NE(testButton(u"Ollama"_s), nullptr);
    EXPECT_NE(testButton(u"OpenRouter"_s), nullptr);
    expectNamedControls(settings);
    photograph(settings, u"settings-export"_s);
    settings.showPage(SettingsWindow::Page::Captions);
    expectNamedControls(settings);
    photograph(settings, u"settings-captions"_s);
    settings.resize(settings.width(), 900);
    photograph(settings, u"settings-captions-tall"_s);
    settings.showPage(SettingsWindow::Page::General);
    expectNamedControls(settings);
    photograph(settings, u"settings-general"_s);
}

TEST_F(SettingsWindowTest, TheStepperGoesFromTwoToTwentyByOne) {
    window();
    auto* const seconds = control<QSpinBox>(*m_window, u"Seconds per photo"_s);
    EXPECT_EQ(seconds->text(), u"5"_s);
    QTest::keyClick(seconds, Qt::Key_Up);
    EXPECT_EQ(m_changes[u"photoDuration"_s], u"6"_s);
    for (int step = 0; step < 30; ++step)
        QTest::keyClick(seconds, Qt::Key_Up);
    EXPECT_EQ(m_changes[u"photoDuration"_s], u"20"_s);
    for (int step = 0; step < 30; ++step)
        QTest::keyClick(seconds, Qt::Key_Down);
    EXPECT_EQ(m_changes[u"photoDuration"_s], u"2"_s);
}

TEST_F(SettingsWindowTest, EachChangeIsToldAsRawText) {
    window();
    QTest::keyClick(control<QCheckBox>(*m_window, u"Ken Burns motion"_s), Qt::Key_Space);
    QTest::keyClick(control<QCheckBox>(*m_window, u"Show captions on the video"_s), Qt::Key_Space);
    QTest::keyClick(control<QCheckBox>(*m_window, u"Generate captions with AI"_s), Qt::Key_Space);
    QTest::keyClick(control<QComboBox>(*m_window, u"Chapter titles"_s), Qt::Key_Down);
    QTest::keyClick(control<QComboBox>(*m_window, u"Default resolution"_s), Qt::Key_Down);
    QTest::keyClick(control<QComboBox>(*m_window, u"Default codec"_s), Qt::Key_Down);
    m_window->showPage(SettingsWindow::Page::Captions);
    QTest::keyClick(control<QComboBox>(*m_window, u"Default provider"_s), Qt::Key_Down);
    QTest::keyClicks(inGroup<QLineEdit>(u"Ollama (local)"_s, u"Model"_s), u"2"_s);
    QTest::keyClicks(control<QPlainTextEdit>(*m_window, u"Caption prompt"_s), u"Short"_s);
    EXPECT_EQ(m_changes, (std::map<QString, QString>{{u"kenBurnsEnabled"_s, u"false"_s},
                                                     {u"captionsEnabled"_s, u"false"_s},
                                                     {u"aiCaptionsEnabled"_s, u"false"_s},
                                                     {u"chapterStyle"_s, u"overlay"_s},
                                                     {u"exportResolution"_s, u"p2160"_s},
                                                     {u"exportCodec"_s, u"hevc"_s},
                                                     {u"defaultAIProvider"_s, u"ollama"_s},
                                                     {u"ollamaModel"_s, u"llava2"_s},
                                                     {u"captionPrompt"_s, u"Short"_s}}));
}

TEST_F(SettingsWindowTest, TheKeyComesLateAndIsMasked) {
    window();
    auto* const key = control<QLineEdit>(*m_window, u"API key"_s);
    EXPECT_EQ(key->text(), QString{});
    m_loaded(u"sk-secret"_s);
    EXPECT_EQ(key->text(), u"sk-secret"_s);
    EXPECT_EQ(key->echoMode(), QLineEdit::Password);
    EXPECT_TRUE(m_savedKeys.isEmpty()) << "what was loaded is not an edit";
}

TEST_F(SettingsWindowTest, EachEditOfTheKeyIsSavedAtOnce) {
    window();
    m_window->showPage(SettingsWindow::Page::Captions);
    auto* const key = control<QLineEdit>(*m_window, u"API key"_s);
    QTest::keyClicks(key, u"ab"_s);
    EXPECT_EQ(m_savedKeys, (QStringList{u"a"_s, u"ab"_s}));
    key->selectAll();
    QTest::keyClick(key, Qt::Key_Backspace);
    EXPECT_EQ(m_savedKeys.last(), QString{}) << "clearing the field removes the key";
    m_loaded(u"sk-stored"_s);
    EXPECT_EQ(key->text(), QString{}) << "a late answer takes no edit away";
}

TEST_F(SettingsWindowTest, OnlyTheNewestEditsProblemIsShown) {
    window();
    m_window->showPage(SettingsWindow::Page::Captions);
    QTest::keyClicks(control<QLineEdit>(*m_window, u"API key"_s), u"ab"_s);
    m_saved[0](u"The keyring is locked."_s);
    EXPECT_FALSE(says(*m_window, u"The keyring is locked."_s));
    m_saved[1](u"The keyring is locked."_s);
    EXPECT_TRUE(says(*m_window, u"The keyring is locked."_s));
    QTest::keyClicks(control<QLineEdit>(*m_window, u"API key"_s), u"c"_s);
    m_saved[2](QString{});
    EXPECT_FALSE(says(*m_window, u"The keyring is locked."_s));
}

TEST_F(SettingsWindowTest, TestsUseWhatIsTyped) {
    window();
    m_window->showPage(SettingsWindow::Page::Captions);
    auto* const model = inGroup<QLineEdit>(u"Ollama (local)"_s, u"Model"_s);
    model->selectAll();
    QTest::keyClicks(model, u"moondream"_s);
    QTest::mouseClick(testButton(u"Ollama"_s), Qt::LeftButton);
    EXPECT_EQ(m_tested, (QStringList{u"http://127.0.0.1:11434"_s, u"moondream"_s}));
    EXPECT_FALSE(testButton(u"Ollama"_s)->isEnabled());
    EXPECT_EQ(status(u"Ollama"_s), u"Testing…"_s);
    m_tests[0]({.isGood = true, .text = u"Connected ✓"_s});
    EXPECT_EQ(status(u"Ollama"_s), u"Connected ✓"_s);
    EXPECT_TRUE(testButton(u"Ollama"_s)->isEnabled());

    m_loaded(u"sk-key"_s);
    QTest::mouseClick(testButton(u"OpenRouter"_s), Qt::LeftButton);
    EXPECT_EQ(m_tested, (QStringList{u"sk-key"_s, u"openai/gpt-4o-mini"_s}));
    m_tests[1]({.isGood = false, .text = u"Invalid key or offline"_s});
    EXPECT_EQ(status(u"OpenRouter"_s), u"Invalid key or offline"_s);
}

TEST_F(SettingsWindowTest, AnAnswerOfOtherFieldsIsDropped) {
    window();
    m_window->showPage(SettingsWindow::Page::Captions);
    QTest::mouseClick(testButton(u"Ollama"_s), Qt::LeftButton);
    QTest::keyClicks(inGroup<QLineEdit>(u"Ollama (local)"_s, u"Base URL"_s), u"0"_s);
    m_tests[0]({.isGood = true, .text = u"Connected ✓"_s});
    EXPECT_EQ(status(u"Ollama"_s), QString{});
}

TEST_F(SettingsWindowTest, AnswersAfterTheWindowIsGoneReachNobody) {
    window();
    m_window->showPage(SettingsWindow::Page::Captions);
    QTest::mouseClick(testButton(u"Ollama"_s), Qt::LeftButton);
    QTest::keyClicks(control<QLineEdit>(*m_window, u"API key"_s), u"a"_s);
    m_window.reset();
    m_tests[0]({.isGood = true, .text = u"Connected ✓"_s});
    m_saved[0](u"The keyring is locked."_s);
    m_loaded(u"sk"_s);
}

TEST_F(SettingsWindowTest, TheFileDialogsAreChosen) {
    window();
    m_window->showPage(SettingsWindow::Page::General);
    QSignalSpy choices{m_window.get(), &SettingsWindow::nativeFileDialogsChosen};
    QTest::keyClick(control<QCheckBox>(*m_window, u"Use the desktop’s file dialogs"_s), Qt::Key_Space);
    ASSERT_EQ(choices.count(), 1);
    EXPECT_FALSE(choices.first().first().toBool());
}

} // namespace
} // namespace Sheets
