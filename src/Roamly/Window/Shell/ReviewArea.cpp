#include <Roamly/Window/Shell/ReviewArea.h>

#include <QListWidget>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace Shell {

ReviewArea::ReviewArea(Document::ProjectDocument& document, QWidget* parent)
    : QWidget(parent)
    , m_document(&document)
    , m_subscription(document.addListener([this](const Document::ProjectDifference&) { refill(); }))
    , m_list(new QListWidget(this)) {
    m_list->setAccessibleName(QStringLiteral("Photos"));
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list);
    connect(m_list, &QListWidget::itemSelectionChanged, this, &ReviewArea::markedChanged);
    refill();
}

std::set<Foundation::Uuid> ReviewArea::marked() const {
    std::set<Foundation::Uuid> ids;
    for (const QModelIndex& index : m_list->selectionModel()->selectedIndexes())
        ids.insert(m_document->project().photos[static_cast<std::size_t>(index.row())].id);
    return ids;
}

void ReviewArea::selectAll() {
    m_list->selectAll();
}

void ReviewArea::selectNone() {
    m_list->clearSelection();
}

void ReviewArea::refill() {
    {
        const QSignalBlocker blocker{m_list};
        m_list->clear();
        for (const ProjectModel::PhotoItem& photo : m_document->project().photos)
            m_list->addItem(QString::fromStdString(photo.caption.value_or("Photo")));
    }
    Q_EMIT markedChanged();
}

} // namespace Shell
