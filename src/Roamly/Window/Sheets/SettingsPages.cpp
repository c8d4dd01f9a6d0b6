// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/ExportPreset.h>
#include <ProjectModel/Words.h>
#include <Roamly/Document/CaptionProvider.h>
#include <Roamly/Window/Sheets/Labels.h>
#include <Roamly/Window/Sheets/SettingsGroup.h>
#include <Roamly/Window/Sheets/SettingsPages.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QScrollArea>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;

namespace Sheets {

namespace {

constexpr int leastSeconds = 2;
constexpr int mostSeconds = 20;

QString truth(bool isTrue) {
    return isTrue ? u"true"_s : u"false"_s;
}

QCheckBox* checkBox(const QString& text, bool isOn, const QString& key, const SettingChanged& changed) {
    auto* const box = new QCheckBox{text};
    box->setChecked(isOn);
    QObject::connect(box, &QCheckBox::toggled, box, [changed, key](bool on) { changed(key, truth(on)); });
    return box;
}

template <typename Enumeration, std::size_t count>
QComboBox* comboBox(const std::array<Enumeration, count>& all, Enumeration present, const QString& key,
                    const SettingChanged& changed) {
    auto* const box = new QComboBox;
    for (const Enumeration each : all)
        box->addItem(toText(displayName(each)), toText(rawValue(each)));
    box->setCurrentIndex(static_cast<int>(present));
    QObject::connect(box, &QComboBox::activated, box,
                     [box, changed, key](int index) { changed(key, box->itemData(index).toString()); });
    return box;
}

QLineEdit* lineEdit(const std::string& text, const QString& key, const SettingChanged& changed) {
    auto* const field = new QLineEdit{QString::fromStdString(text)};
    QObject::connect(field, &QLineEdit::textEdited, field,
                     [changed, key](const QString& edited) { changed(key, edited); });
    return field;
}

/// A page that scrolls where the window is too low for it.
QWidget* scrolling(const QString& name, std::initializer_list<QWidget*> groups) {
    auto* const content = new QWidget;
    auto* const column = new QVBoxLayout{content};
    column->setContentsMargins(24, 24, 24, 24);
    column->setSpacing(24);
    for (QWidget* const group : groups)
        column->addWidget(group);
    column->addStretch(1);
    auto* const page = new QScrollArea;
    page->setAccessibleName(name);
    page->setFrameShape(QFrame::NoFrame);
    page->setWidgetResizable(true);
    page->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    page->setWidget(content);
    page->setFocusPolicy(Qt::NoFocus);
    return page;
}

SettingsGroup* providersGroup(const Document::AppSettings& settings, const SettingChanged& changed) {
    auto* const group = new SettingsGroup{u"AI providers"_s};
    group->addRow(u"Default provider"_s, comboBox(ProjectModel::allAIProviders, settings.defaultAIProvider,
                                                  u"defaultAIProvider"_s, changed));
    group->addNote(toText(ProjectModel::Words::providersNote));
    auto* const prompt =
        new QPlainTextEdit{QString::fromStdString(settings.captionPrompt.value_or(std::string{}))};
    prompt->setPlaceholderText(u"Neutral, natural captions"_s);
    prompt->setTabChangesFocus(true);
    prompt->document()->setDocumentMargin(8);
    prompt->setFixedHeight(72);
    QObject::connect(prompt, &QPlainTextEdit::textChanged, prompt,
                     [prompt, changed] { changed(u"captionPrompt"_s, prompt->toPlainText()); });
    group->addRow(u"Caption prompt"_s, prompt);
    return group;
}

SettingsGroup* ollamaGroup(const Document::AppSettings& settings, const SettingsServices& services,
                           const SettingChanged& changed) {
    auto* const group = new SettingsGroup{u"Ollama (local)"_s};
    QLineEdit* const baseURL = lineEdit(settings.ollamaBaseURL, u"ollamaBaseURL"_s, changed);
    QLineEdit* const model = lineEdit(settings.ollamaModel, u"ollamaModel"_s, changed);
    group->addRow(u"Base URL"_s, baseURL);
    group->addRow(u"Model"_s, model);
    group->addNote(
        u"Use a vision model so captions describe the photo, e.g. llava or llama3.2-vision. Pull it first: `ollama pull llava`."_s);
    auto* const test = new ConnectionTestRow{
        u"Ollama"_s,
        [baseURL, model, ask = services.testOllama](std::function<void(const ConnectionStatus&)> done) {
            ask(baseURL->text(), model->text(), std::move(done));
        }};
    for (QLineEdit* const field : {baseURL, model})
        QObject::connect(field, &QLineEdit::textChanged, test, &ConnectionTestRow::forget);
    group->addRow(test);
    return group;
}

SettingsGroup* openRouterGroup(const Document::AppSettings& settings, const SettingsServices& services,
                               const SettingChanged& changed) {
    auto* const group = new SettingsGroup{u"OpenRouter (cloud)"_s};
    QLabel* const problem = sentence();
    QLineEdit* const key = keyField(services.keyStore, problem);
    QLineEdit* const model = lineEdit(settings.openRouterModel, u"openRouterModel"_s, changed);
    group->addRow(u"API key"_s, key);
    group->addRow(problem);
    group->addRow(u"Model"_s, model);
    group->addNote(u"Use a vision model, e.g. openai/gpt-4o-mini or google/gemini-flash-1.5."_s);
    group->addNote(
        u"Privacy: OpenRouter is a **cloud** service. Every photo you caption is uploaded to OpenRouter and the model provider you choose — the images leave your computer. Don’t use it for photos you want to keep private; use Built-in or Ollama for that."_s);
    auto* const test = new ConnectionTestRow{
        u"OpenRouter"_s,
        [key, model, ask = services.testOpenRouter](std::function<void(const ConnectionStatus&)> done) {
            ask(key->text(), model->text(), std::move(done));
        }};
    for (QLineEdit* const field : {key, model})
        QObject::connect(field, &QLineEdit::textChanged, test, &ConnectionTestRow::forget);
    group->addRow(test);
    return group;
}

} // namespace

QLineEdit* keyField(const KeyStore& store, QLabel* problem) {
    auto* const field = new QLineEdit;
    field->setEchoMode(QLineEdit::Password);
    field->setInputMethodHints(Qt::ImhHiddenText | Qt::ImhNoPredictiveText | Qt::ImhSensitiveData);
    problem->setVisible(false);
    problem->setObjectName(u"keyProblem"_s);
    // Counts the edits: only the newest one's problem holds, and a key that comes late takes nothing away.
    const auto edits = std::make_shared<int>(0);
    QObject::connect(field, &QLineEdit::textEdited, field, [store, problem, edits](const QString& key) {
        const int edit = ++*edits;
        store.save(key, [problem = QPointer{problem}, edits, edit](const QString& sentence) {
            if (!problem || *edits != edit)
                return;
            problem->setText(sentence);
            problem->setVisible(!sentence.isEmpty());
        });
    });
    store.load([field = QPointer{field}, edits](const QString& key) {
        if (field && *edits == 0)
            field->setText(key);
    });
    return field;
}

QWidget* exportPage(const Document::AppSettings& settings, const SettingChanged& changed) {
    auto* const group = new SettingsGroup{u"Export"_s};
    auto* const seconds = new QSpinBox;
    seconds->setRange(leastSeconds, mostSeconds);
    seconds->setValue(
        static_cast<int>(std::lround(std::clamp<double>(settings.photoDuration, leastSeconds, mostSeconds))));
    seconds->setAccessibleName(u"Seconds per photo"_s);
    seconds->setFixedWidth(96);
    QObject::connect(seconds, &QSpinBox::valueChanged, seconds,
                     [changed](int value) { changed(u"photoDuration"_s, QString::number(value)); });
    group->addRow(u"Seconds per photo: "_s, seconds);
    group->addRow(checkBox(u"Ken Burns motion"_s, settings.kenBurnsEnabled, u"kenBurnsEnabled"_s, changed));
    group->addRow(u"Chapter titles"_s, comboBox(ProjectModel::allChapterStyles, settings.chapterStyle,
                                                u"chapterStyle"_s, changed));
    group->addRow(
        checkBox(u"Show captions on the video"_s, settings.captionsEnabled, u"captionsEnabled"_s, changed));
    group->addRow(checkBox(u"Generate captions with AI"_s, settings.aiCaptionsEnabled, u"aiCaptionsEnabled"_s,
                           changed));
    group->addRow(u"Default resolution"_s, comboBox(Export::allExportResolutions, settings.exportResolution,
                                                    u"exportResolution"_s, changed));
    group->addRow(u"Default codec"_s,
                  comboBox(Export::allExportCodecs, settings.exportCodec, u"exportCodec"_s, changed));
    group->addNote(u"A project’s own settings win over these."_s);
    return scrolling(u"Export"_s, {group});
}

QWidget* captionsPage(const Document::AppSettings& settings, const SettingsServices& services,
                      const SettingChanged& changed) {
    return scrolling(u"Captions"_s,
                     {providersGroup(settings, changed), ollamaGroup(settings, services, changed),
                      openRouterGroup(settings, services, changed)});
}

QWidget* generalPage(const Document::AppSettings& settings, bool usesNativeFileDialogs,
                     const SettingChanged& changed, const std::function<void(bool)>& nativeChosen) {
    auto* const files = new SettingsGroup{u"Files"_s};
    auto* const native = new QCheckBox{u"Use the desktop’s file dialogs"_s};
    native->setChecked(usesNativeFileDialogs);
    QObject::connect(native, &QCheckBox::toggled, native, nativeChosen);
    files->addRow(native);
    files->addNote(u"Turn this off where they are missing or slow."_s);

    auto* const places = new SettingsGroup{u"Places"_s};
    QLineEdit* const server =
        lineEdit(settings.geocoderURL.value_or(std::string{}), u"geocoderURL"_s, changed);
    server->setPlaceholderText(u"None"_s);
    places->addRow(u"Place server"_s, server);
    places->addNote(
        u"Places are named on this computer. Name a server that speaks Nominatim’s protocol to ask it instead; it then learns where your photos were taken."_s);
    return scrolling(u"General"_s, {files, places});
}

} // namespace Sheets
