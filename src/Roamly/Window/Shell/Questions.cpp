#include <Foundation/DisplayText.h>
#include <Roamly/Window/Shell/Questions.h>

#include <QDateTime>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <utility>

namespace Shell {

namespace {

QMessageBox* box(QWidget* window, const QString& title, const QString& message) {
    auto* const result = new QMessageBox(window);
    result->setAttribute(Qt::WA_DeleteOnClose);
    result->setWindowModality(Qt::WindowModal);
    result->setWindowTitle(title);
    result->setText(title);
    result->setInformativeText(message);
    return result;
}

} // namespace

DocumentQuestions questionsOver(QWidget* window, const FileChoosers& choosers) {
    DocumentQuestions questions;
    questions.saveChanges = [window](const QString& name, const std::function<void(SaveAnswer)>& answer) {
        QMessageBox* const alert =
            box(window, QStringLiteral("Save changes to “%1” before closing?").arg(name),
                QStringLiteral("If you don’t save, your changes are lost."));
        alert->setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
        alert->setDefaultButton(QMessageBox::Save);
        QObject::connect(alert, &QMessageBox::finished, window, [answer](int button) {
            answer(button == QMessageBox::Save      ? SaveAnswer::Save
                   : button == QMessageBox::Discard ? SaveAnswer::Discard
                                                    : SaveAnswer::Cancel);
        });
        alert->open();
    };
    questions.fileChanged = [window](const QString& name,
                                     const std::function<void(ChangedFileAnswer)>& answer) {
        QMessageBox* const alert =
            box(window, QStringLiteral("Another program changed “%1”").arg(name),
                QStringLiteral("You changed it here too. Keep your changes, or load what the file holds?"));
        QPushButton* const keep = alert->addButton(QStringLiteral("Keep Mine"), QMessageBox::AcceptRole);
        QPushButton* const load =
            alert->addButton(QStringLiteral("Load the File’s"), QMessageBox::DestructiveRole);
        alert->addButton(QMessageBox::Cancel);
        alert->setDefaultButton(keep);
        QObject::connect(alert, &QMessageBox::finished, window, [alert, keep, load, answer] {
            answer(alert->clickedButton() == keep   ? ChangedFileAnswer::KeepMine
                   : alert->clickedButton() == load ? ChangedFileAnswer::LoadTheFiles
                                                    : ChangedFileAnswer::Cancel);
        });
        alert->open();
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
    QMessageBox* const alert = box(window, sentence, {});
    alert->setIcon(QMessageBox::Warning);
    alert->open();
}

void askForConsent(QWidget* window, const Document::PrivacyConfirmation& confirmation,
                   std::function<void(bool agreed)> answer) {
    QMessageBox* const alert =
        box(window,
            QString::fromUtf8(confirmation.title.data(), static_cast<qsizetype>(confirmation.title.size())),
            QString::fromStdString(confirmation.message));
    QPushButton* const use =
        alert->addButton(QString::fromStdString(confirmation.agreement), QMessageBox::DestructiveRole);
    alert->setDefaultButton(alert->addButton(QMessageBox::Cancel));
    QObject::connect(alert, &QMessageBox::finished, window,
                     [alert, use, answer = std::move(answer)] { answer(alert->clickedButton() == use); });
    alert->open();
}

void askToRecover(QWidget* window, const std::optional<std::filesystem::path>& original,
                  Foundation::Instant written, std::function<void(RecoveryAnswer)> answer) {
    const QString name = original ? QString::fromStdString(Foundation::displayText(original->stem()))
                                  : QStringLiteral("Untitled");
    const QDateTime time = QDateTime::fromSecsSinceEpoch(written.time_since_epoch().count());
    QMessageBox* const alert =
        box(window, QStringLiteral("Recover “%1”?").arg(name),
            QStringLiteral(
                "Roamly ended before this project was saved. What you changed until %1 is still there.")
                .arg(QLocale{}.toString(time, QLocale::ShortFormat)));
    QPushButton* const recover = alert->addButton(QStringLiteral("Recover"), QMessageBox::AcceptRole);
    QPushButton* const discard = alert->addButton(QStringLiteral("Discard"), QMessageBox::DestructiveRole);
    alert->addButton(QStringLiteral("Later"), QMessageBox::RejectRole);
    alert->setDefaultButton(recover);
    QObject::connect(alert, &QMessageBox::finished, window,
                     [alert, recover, discard, answer = std::move(answer)] {
                         answer(alert->clickedButton() == recover   ? RecoveryAnswer::Recover
                                : alert->clickedButton() == discard ? RecoveryAnswer::Discard
                                                                    : RecoveryAnswer::Later);
                     });
    alert->open();
}

void askToEndExport(QWidget* window, std::function<void()> agreed) {
    QMessageBox* const alert =
        box(window, QStringLiteral("The movie is not finished yet"),
            QStringLiteral("Closing the window ends the export, and no movie is left."));
    QPushButton* const end = alert->addButton(QStringLiteral("End Export"), QMessageBox::DestructiveRole);
    QPushButton* const go = alert->addButton(QStringLiteral("Go On"), QMessageBox::RejectRole);
    alert->setDefaultButton(go);
    QObject::connect(alert, &QMessageBox::finished, window, [alert, end, agreed = std::move(agreed)] {
        if (alert->clickedButton() == end)
            agreed();
    });
    alert->open();
}

} // namespace Shell
