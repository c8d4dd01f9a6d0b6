// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Sheets/Sheet.h>

#include <cstddef>
#include <map>

class QLineEdit;

namespace Sheets {

struct KnownPlaces;

/// Names the place of some photos.
class PlaceSheet : public Sheet {
    Q_OBJECT
public:
    /// `city` and `country` are what the photos have in common, empty where they have nothing.
    PlaceSheet(std::size_t photoCount, const QString& city, const QString& country, const KnownPlaces& known,
               QWidget* parent);

Q_SIGNALS:
    /// As typed; both empty means that the photos have no place. The sheet is closed then.
    void placeChosen(const QString& city, const QString& country);

private:
    void followCity(const QString& city);

    std::map<QString, QString> m_countryOfCity;
    QLineEdit* m_city;
    QLineEdit* m_country;
    /// The country was filled in here and may be filled in again.
    bool m_mayFillCountry;
};

} // namespace Sheets
