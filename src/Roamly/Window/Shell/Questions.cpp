// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/DisplayText.h>
#include <Roamly/Window/Sheets/Alerts.h>
#include <Roamly/Window/Shell/Questions.h>

#include <QDateTime>
#include <QLocale>
#include <QMessageBox>
#include <utility>

namespace Shell {

namespace {

using Sheets::Answer;

void ask(QWidget* window, const Sheets::AlertContent& content, std::function<void(Answer)> answer) {
    auto* const alert = new Sheets::Alert(content, window);
    alert->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(alert, &Sheets::Alert::answered, window,
                     [answer = std::move(answer)](Answer chosen) { answer(chosen); });
    alert->open();
}

QString utf16(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

} // namespace

DocumentQuestions questionsOver(QWidget* window, const FileChoosers& choosers) {
    DocumentQuestions questions;
    questions.saveChanges = [window](const QString& name, const std::function<void(SaveAnswer)>& answer) {
        ask(window, Sheets::Alerts::saveChanges(name), [answer](Answer chosen) {
            answer(chosen == Answer::Save      ? SaveAnswer::Save
                   : chosen == Answer::Discard ? SaveAnswer::Discard
                                               : SaveAnswer::Cancel);
        });
    };
    questions.fileChanged = [window](const QString& name,
                                     const std::function<void(ChangedFileAnswer)>& answer) {
        ask(window, Sheets::Alerts::fileChanged(name), [answer](Answer chosen) {
            answer(chosen == Answer::KeepMine   ? ChangedFileAnswer::KeepMine
                   : chosen == Answer::LoadFile ? ChangedFileAnswer::LoadTheFiles
                                                : ChangedFileAnswer::Cancel);
        });
    };
    questions.whereToSave = [window, choose = choosers.whereToSaveProject](
                                const QString& sentence, const std::filesystem::path& proposed,
                                const std::function<void(std::filesystem::path)>& chosen) {
        choose(window, sentence, proposed, chosen);
    };
    questions.tell = [window](const QString& sentence) { tell(window, sentence); };
    return questions;
}

void tell(QWidget* window, const QString& sentence) {
    ask(window, Sheets::Alerts::error(QStringLiteral("That did not work"), sentence), [](Answer) {});
}

void tellAbout(QWidget* window) {
    QMessageBox::about(window, QStringLiteral("About Roamly"),
                       QStringLiteral("Roamly turns a pile of holiday photos into a slideshow film."));
}

void askForConsent(QWidget* window, const Document::PrivacyConfirmation& confirmation,
                   std::function<void(bool agreed)> answer) {
    ask(window,
        Sheets::Alerts::privacyConfirmation(utf16(confirmation.title), utf16(confirmation.message),
                                            utf16(confirmation.agreement)),
        [answer = std::move(answer)](Answer chosen) { answer(chosen == Answer::Agree); });
}

void askToRecover(QWidget* window, const std::optional<std::filesystem::path>& original,
                  Foundation::Instant written, std::function<void(RecoveryAnswer)> answer) {
    const QString name =
        original ? utf16(Foundation::displayText(original->stem())) : QStringLiteral("Untitled");
    const QDateTime time = QDateTime::fromSecsSinceEpoch(written.time_since_epoch().count());
    ask(window, Sheets::Alerts::recovery(name, QLocale{}.toString(time, QLocale::ShortFormat)),
        [answer = std::move(answer)](Answer chosen) {
            answer(chosen == Answer::Recover   ? RecoveryAnswer::Recover
                   : chosen == Answer::Discard ? RecoveryAnswer::Discard
                                               : RecoveryAnswer::Later);
        });
}

void askToEndExport(QWidget* window, std::function<void(bool)> answer) {
    const Sheets::AlertContent content{
        .icon = QStringLiteral("warning"),
        .title = QStringLiteral("The movie is not finished yet"),
        .message = QStringLiteral("Closing the window ends the export, and no movie is left."),
        .choices = {{Answer::Discard, QStringLiteral("End Export"), true},
                    {Answer::Cancel, QStringLiteral("Go On"), false}},
        .primary = Answer::Cancel,
        .escape = Answer::Cancel};
    ask(window, content, [answer = std::move(answer)](Answer chosen) { answer(chosen == Answer::Discard); });
}

} // namespace Shell
