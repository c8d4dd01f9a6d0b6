// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/KnownPlaces.h>
#include <Roamly/Window/Sheets/Labels.h>
#include <Roamly/Window/Sheets/PlaceSheet.h>
#include <Roamly/Window/Sheets/Quantities.h>

#include <QCompleter>
#include <QFormLayout>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace Sheets {

namespace {

QLineEdit* placeField(const QString& name, const QString& text, const QStringList& known) {
    auto* const field = new QLineEdit{text};
    field->setAccessibleName(name);
    field->setMinimumWidth(280);
    auto* const completer = new QCompleter{known, field};
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setFilterMode(Qt::MatchStartsWith);
    field->setCompleter(completer);
    return field;
}

} // namespace

PlaceSheet::PlaceSheet(std::size_t photoCount, const QString& city, const QString& country,
                       const KnownPlaces& known, QWidget* parent)
    : Sheet(u"Set Place"_s, parent)
    , m_countryOfCity(known.countryOfCity)
    , m_city(placeField(u"City"_s, city, known.cities))
    , m_country(placeField(u"Country"_s, country, known.countries))
    , m_mayFillCountry(country.isEmpty()) {
    const auto count = static_cast<std::int64_t>(photoCount);
    body()->addWidget(
        note(u"The place of %1, as the film will show it. Leave both fields empty for no place."_s.arg(
            photoCountText(count))));
    auto* const form = new QFormLayout;
    form->setSpacing(8);
    form->setHorizontalSpacing(16);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(fieldLabel(u"City"_s, m_city), m_city);
    form->addRow(fieldLabel(u"Country"_s, m_country), m_country);
    body()->addLayout(form);
    body()->addStretch(1);

    QPushButton* const cancel = addButton(u"Cancel"_s, QDialogButtonBox::RejectRole);
    QPushButton* const set = addButton(u"Set Place"_s, QDialogButtonBox::AcceptRole);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(set, &QPushButton::clicked, this, [this] {
        accept();
        Q_EMIT placeChosen(m_city->text(), m_country->text());
    });
    connect(m_city, &QLineEdit::textChanged, this, &PlaceSheet::followCity);
    connect(m_country, &QLineEdit::textEdited, this,
            [this](const QString& text) { m_mayFillCountry = text.isEmpty(); });
    m_city->setFocus();
    m_city->selectAll();
}

void PlaceSheet::followCity(const QString& city) {
    if (!m_mayFillCountry)
        return;
    const auto known = m_countryOfCity.find(city.trimmed());
    m_country->setText(known == m_countryOfCity.end() ? QString{} : known->second);
}

} // namespace Sheets
