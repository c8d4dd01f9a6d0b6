// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/ZoomControl.h>

#include <QHBoxLayout>
#include <QSlider>
#include <QToolButton>

namespace Grid {

namespace {

constexpr int step = 32;

} // namespace

ZoomControl::ZoomControl(int smallest, int largest, QWidget* parent)
    : QWidget(parent)
    , m_slider(new QSlider{Qt::Horizontal, this}) {
    const auto button = [this](const QString& sign, const QString& name) {
        auto* result = new QToolButton{this};
        result->setText(sign);
        result->setAccessibleName(name);
        result->setToolTip(name);
        result->setAutoRaise(true);
        result->setFixedSize(24, 24);
        return result;
    };
    QToolButton* smaller = button(QStringLiteral("−"), QStringLiteral("Smaller photos"));
    QToolButton* larger = button(QStringLiteral("+"), QStringLiteral("Larger photos"));
    m_slider->setAccessibleName(QStringLiteral("Photo size"));
    m_slider->setToolTip(QStringLiteral("How large the photos are shown"));
    m_slider->setRange(smallest, largest);
    m_slider->setSingleStep(step / 4);
    m_slider->setPageStep(step);
    m_slider->setFixedWidth(128);

    auto* row = new QHBoxLayout{this};
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    row->addWidget(smaller);
    row->addWidget(m_slider);
    row->addWidget(larger);
    connect(smaller, &QToolButton::clicked, this, &ZoomControl::zoomOut);
    connect(larger, &QToolButton::clicked, this, &ZoomControl::zoomIn);
    connect(m_slider, &QSlider::valueChanged, this, &ZoomControl::valueChanged);
}

int ZoomControl::value() const {
    return m_slider->value();
}

void ZoomControl::setValue(int value) {
    m_slider->setValue(value);
}

void ZoomControl::zoomIn() {
    m_slider->setValue(m_slider->value() + step);
}

void ZoomControl::zoomOut() {
    m_slider->setValue(m_slider->value() - step);
}

} // namespace Grid
