#pragma once

#include <Foundation/Uuid.h>
#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Window/Shell/Intent.h>

#include <QList>
#include <QUrl>
#include <QWidget>
#include <set>
#include <vector>

class QListWidget;

namespace Shell {

/// The photos of a document and what is done with them in their own view: the join between the window and the
/// review grid.
class ReviewArea : public QWidget {
    Q_OBJECT

public:
    /// Borrows the document.
    explicit ReviewArea(Document::ProjectDocument& document, QWidget* parent = nullptr);

    /// What the actions on photos apply to.
    [[nodiscard]] std::set<Foundation::Uuid> marked() const;
    void selectAll();
    void selectNone();

Q_SIGNALS:
    void markedChanged();
    void wanted(Shell::Intent intent);
    void dropped(const QList<QUrl>& urls);

private:
    void refill();

    Document::ProjectDocument* m_document;
    Document::ProjectDocument::Subscription m_subscription;
    QListWidget* m_list = nullptr;
};

} // namespace Shell
