// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/DetailsPanel.h>
#include <Roamly/Window/Grid/PhotoText.h>
#include <Roamly/Window/Theme/Colours.h>
#include <Roamly/Window/Theme/Icons.h>

#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <optional>

namespace Grid {

namespace {

constexpr int edge = 16;
constexpr int panelWidth = 272;
constexpr int previewHeight = 176;
constexpr int captionHeight = 96;

/// A text as wide as the panel, which may be copied.
QLabel* makeText(const QString& name) {
    auto* label = new QLabel;
    label->setAccessibleName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // Also a name without a single space must not widen the panel.
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    return label;
}

/// Lets a long word be broken where it must be.
QString breakable(QString text) {
    for (const QChar sign : {QLatin1Char('_'), QLatin1Char('-'), QLatin1Char('.')})
        text.replace(sign, QString{sign} + QChar{0x200B});
    return text;
}

QPushButton* makeButton(const char* icon, const QString& text) {
    return new QPushButton{Theme::icon(QString::fromUtf8(icon)), text};
}

void setOrHide(QLabel& label, const QString& text) {
    label.setText(text);
    label.setVisible(!text.isEmpty());
}

} // namespace

/// The photo as its thumbnail shows it.
class DetailsPreview : public QWidget {
public:
    explicit DetailsPreview(ThumbnailFeed& feed)
        : m_fitted(feed, nullptr) {
        setFixedHeight(previewHeight);
        setAccessibleName(QStringLiteral("Preview"));
    }

    void setPhoto(const ProjectModel::PhotoItem& photo) {
        m_photo = photo;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter{this};
        painter.setRenderHint(QPainter::Antialiasing);
        const Theme::Colours colours = Theme::colours(palette());
        if (!m_photo || !m_fitted.paint(painter, rect(), *m_photo).isEmpty())
            return;
        painter.setPen(Qt::NoPen);
        painter.setBrush(colours.tile);
        painter.drawRoundedRect(rect(), 6, 6);
        if (m_photo->isMissing) {
            painter.setPen(colours.quietText);
            painter.drawText(rect(), Qt::AlignCenter, QStringLiteral("Missing"));
        }
    }

private:
    FittedPhoto m_fitted;
    std::optional<ProjectModel::PhotoItem> m_photo;
};

DetailsPanel::DetailsPanel(ThumbnailFeed& feed, QWidget* parent)
    : QWidget(parent)
    , m_page(new QWidget)
    , m_nothing(new QLabel)
    , m_preview(new DetailsPreview{feed})
    , m_file(makeText(QStringLiteral("File")))
    , m_showInFiles(makeButton("show-in-files", QStringLiteral("Show in Files")))
    , m_date(makeText(QStringLiteral("Date")))
    , m_place(makeText(QStringLiteral("Place")))
    , m_evidence(makeText(QStringLiteral("Evidence of the place")))
    , m_setPlace(makeButton("place", QStringLiteral("Set Place…")))
    , m_caption(new QPlainTextEdit)
    , m_group(new QWidget)
    , m_shot(makeText(QStringLiteral("Similar shots")))
    , m_quality(makeText(QStringLiteral("Quality")))
    , m_compare(makeButton("compare", QStringLiteral("Compare Group"))) {
    setAccessibleName(QStringLiteral("Details"));
    setFixedWidth(panelWidth);
    setAutoFillBackground(true);
    m_nothing->setAlignment(Qt::AlignCenter);
    m_nothing->setWordWrap(true);
    m_caption->setAccessibleName(QStringLiteral("Caption"));
    m_caption->setPlaceholderText(QStringLiteral("Add a caption"));
    m_caption->setTabChangesFocus(true);
    m_caption->setFixedHeight(captionHeight);
    m_caption->installEventFilter(this);

    auto* group = new QVBoxLayout{m_group};
    group->setContentsMargins(0, 0, 0, 0);
    group->setSpacing(4);
    group->addWidget(m_shot);
    group->addWidget(m_quality);
    group->addSpacing(4);
    group->addWidget(m_compare, 0, Qt::AlignLeft);

    auto* column = new QVBoxLayout{m_page};
    column->setContentsMargins(edge, edge, edge, edge);
    column->setSpacing(4);
    column->addWidget(m_preview);
    column->addSpacing(8);
    column->addWidget(m_file);
    column->addWidget(m_date);
    column->addSpacing(4);
    column->addWidget(m_showInFiles, 0, Qt::AlignLeft);
    column->addSpacing(16);
    column->addWidget(m_place);
    column->addWidget(m_evidence);
    column->addSpacing(4);
    column->addWidget(m_setPlace, 0, Qt::AlignLeft);
    column->addSpacing(16);
    column->addWidget(m_caption);
    column->addSpacing(16);
    column->addWidget(m_group);
    column->addStretch();

    auto* scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    auto* pages = new QWidget;
    auto* either = new QVBoxLayout{pages};
    either->setContentsMargins(0, 0, 0, 0);
    either->addWidget(m_page);
    either->addWidget(m_nothing, 1);
    scroll->setWidget(pages);
    auto* whole = new QVBoxLayout{this};
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(scroll);

    connect(m_showInFiles, &QPushButton::clicked, this,
            [this] { Q_EMIT fileRequested(m_details->photo.id); });
    connect(m_setPlace, &QPushButton::clicked, this, [this] { Q_EMIT placeRequested(m_details->photo.id); });
    connect(m_compare, &QPushButton::clicked, this, [this] { Q_EMIT groupRequested(m_details->photo.id); });
    connect(&feed, &ThumbnailFeed::ready, this, [this](const Foundation::Uuid& photo) {
        if (m_details && m_details->photo.id == photo)
            m_preview->update();
    });
    colour();
    setDetails(std::nullopt);
}

void DetailsPanel::setDetails(const std::optional<PhotoDetails>& details, const QString& otherwise) {
    const bool isOther =
        details.has_value() != m_details.has_value() || (details && details->photo.id != m_details->photo.id);
    if (isOther)
        finishEditing();
    const bool isTyping = !isOther && m_caption->document()->isModified();
    m_details = details;
    m_page->setVisible(details.has_value());
    m_nothing->setVisible(!details);
    m_nothing->setText(otherwise);
    if (!details)
        return;
    m_preview->setPhoto(details->photo);
    m_file->setText(breakable(PhotoText::fileName(details->photo)));
    m_showInFiles->setEnabled(details->whyNoFile.isEmpty());
    m_showInFiles->setToolTip(details->whyNoFile);
    setOrHide(*m_date, details->date);
    m_place->setText(details->place.isEmpty() ? QStringLiteral("No place") : details->place);
    setOrHide(*m_evidence, details->placeEvidence);
    m_group->setVisible(!details->shot.isEmpty());
    m_shot->setText(details->shot);
    setOrHide(*m_quality, details->quality);
    if (!isTyping)
        showCaption();
}

void DetailsPanel::showCaption() {
    const QString caption = QString::fromStdString(m_details->photo.caption.value_or(""));
    if (m_caption->toPlainText() != caption)
        m_caption->setPlainText(caption);
    m_caption->document()->setModified(false);
}

void DetailsPanel::finishEditing() {
    if (!m_details || !m_caption->document()->isModified())
        return;
    m_caption->document()->setModified(false);
    const QString caption = m_caption->toPlainText();
    if (caption != QString::fromStdString(m_details->photo.caption.value_or("")))
        Q_EMIT captionEdited(m_details->photo.id, caption);
}

bool DetailsPanel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusOut)
        finishEditing();
    if (event->type() == QEvent::KeyPress && m_details) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const bool isReturn = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
        if (isReturn && key->modifiers().testFlag(Qt::ControlModifier)) {
            finishEditing();
            return true;
        }
        if (key->key() == Qt::Key_Escape) {
            m_caption->document()->setModified(false);
            showCaption();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void DetailsPanel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        colour();
}

void DetailsPanel::colour() {
    const Theme::Colours colours = Theme::colours(palette());
    for (QLabel* label : {m_date, m_evidence, m_quality, m_nothing}) {
        QPalette quiet{label->palette()};
        quiet.setColor(QPalette::WindowText, colours.quietText);
        label->setPalette(quiet);
    }
}

} // namespace Grid
