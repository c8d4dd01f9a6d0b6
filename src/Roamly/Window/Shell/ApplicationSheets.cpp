// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/OpenRouterCaptioner.h>
#include <Captioning/URLSessionTransport.h>
#include <Roamly/Platform/ConnectionTest.h>
#include <Roamly/Platform/OpenRouterKey.h>
#include <Roamly/Window/Sheets/HelpWindow.h>
#include <Roamly/Window/Sheets/SettingsWindow.h>
#include <Roamly/Window/Shell/ApplicationSheets.h>
#include <Roamly/Window/Shell/Errands.h>

#include <memory>
#include <string>
#include <utility>

namespace Shell {

namespace {

using Jobs::Job;
using TestOutcome = Platform::ConnectionTest::Outcome;

Sheets::ConnectionStatus statusOf(const TestOutcome& outcome) {
    return {.isGood = outcome.isGood,
            .text = QString::fromUtf8(outcome.text.data(), static_cast<qsizetype>(outcome.text.size()))};
}

Sheets::KeyStore keyStore(Errands& errands) {
    Sheets::KeyStore store;
    store.load = [&errands](std::function<void(const QString&)> done) {
        errands.add([done = std::move(done)](const Job::Run&) -> Job::Landing {
            return [done, key = QString::fromStdString(Platform::OpenRouterKey::stored())] { done(key); };
        });
    };
    store.save = [&errands](const QString& key, std::function<void(const QString&)> done) {
        errands.add([key = key.toStdString(), done = std::move(done)](const Job::Run&) -> Job::Landing {
            const auto problem = Platform::OpenRouterKey::keep(key);
            const QString text =
                problem ? QString::fromUtf8(problem->data(), static_cast<qsizetype>(problem->size()))
                        : QString{};
            return [done, text] { done(text); };
        });
    };
    return store;
}

Sheets::SettingsServices servicesOver(Errands& errands, const std::string& openRouterURL) {
    Sheets::SettingsServices services;
    services.keyStore = keyStore(errands);
    services.testOllama = [&errands](const QString& baseURL, const QString& model,
                                     std::function<void(const Sheets::ConnectionStatus&)> done) {
        errands.add([url = baseURL.toStdString(), name = model.toStdString(),
                     done = std::move(done)](const Job::Run& run) -> Job::Landing {
            const TestOutcome outcome = Platform::ConnectionTest::ollama(
                url, name, std::make_shared<Captioning::URLSessionTransport>(), run.stop());
            return [done, status = statusOf(outcome)] { done(status); };
        });
    };
    services.testOpenRouter = [&errands,
                               openRouterURL](const QString& key, const QString& model,
                                              std::function<void(const Sheets::ConnectionStatus&)> done) {
        errands.add([secret = key.toStdString(), name = model.toStdString(), openRouterURL,
                     done = std::move(done)](const Job::Run& run) -> Job::Landing {
            const TestOutcome outcome = Platform::ConnectionTest::openRouter(
                secret, name, std::make_shared<Captioning::URLSessionTransport>(), openRouterURL, run.stop());
            return [done, status = statusOf(outcome)] { done(status); };
        });
    };
    return services;
}

} // namespace

ApplicationSheets::ApplicationSheets(const WindowServices& services, QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_errands(new Errands(this)) {}

ApplicationSheets::~ApplicationSheets() = default;

void ApplicationSheets::showSettings() {
    if (!m_settings) {
        m_settings = new Sheets::SettingsWindow(
            m_services.settings(), m_services.usesNativeDialogs(),
            servicesOver(*m_errands, m_services.engines.captions.openRouterBaseURL));
        m_settings->setAttribute(Qt::WA_DeleteOnClose);
        connect(m_settings, &Sheets::SettingsWindow::settingChanged, this,
                [this](const QString& key, const QString& value) {
                    m_services.setSetting(key.toStdString(), value.toStdString());
                    Q_EMIT settingsChanged();
                });
        connect(m_settings, &Sheets::SettingsWindow::nativeFileDialogsChosen, this,
                [this](bool usesNative) { m_services.setUsesNativeDialogs(usesNative); });
    }
    m_settings->show();
    m_settings->raise();
    m_settings->activateWindow();
}

void ApplicationSheets::showHelp(const QString& page) {
    if (!m_help) {
        m_help = new Sheets::HelpWindow;
        m_help->setAttribute(Qt::WA_DeleteOnClose);
    }
    if (!page.isEmpty())
        m_help->showPage(page);
    m_help->show();
    m_help->raise();
    m_help->activateWindow();
}

} // namespace Shell
