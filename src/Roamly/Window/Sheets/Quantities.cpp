// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/Quantities.h>

#include <QLocale>
#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace Sheets {

namespace {

/// The texts are English, so the figures in them are too.
QLocale figures() {
    return QLocale{QLocale::English, QLocale::UnitedStates};
}

QString counted(long long count, const QString& unit) {
    return figures().toString(count) + u' ' + unit + (count == 1 ? QString{} : u"s"_s);
}

} // namespace

QString lengthText(double seconds) {
    const long long whole = std::llround(std::max(0.0, seconds));
    const long long hours = whole / 3600;
    const long long minutes = whole / 60 % 60;
    const QString tail = u"%1"_s.arg(whole % 60, 2, 10, QLatin1Char('0'));
    if (hours == 0)
        return u"%1:%2"_s.arg(minutes).arg(tail);
    return u"%1:%2:%3"_s.arg(hours).arg(minutes, 2, 10, QLatin1Char('0')).arg(tail);
}

QString roughTimeText(double seconds) {
    if (seconds < 45)
        return u"less than a minute"_s;
    const long long minutes = std::max(1LL, std::llround(seconds / 60));
    if (minutes < 60)
        return u"about "_s + counted(minutes, u"minute"_s);
    // Nobody can tell an hour to the minute in advance.
    const long long tens = std::llround(static_cast<double>(minutes) / 10) * 10;
    const QString hours = u"about "_s + counted(tens / 60, u"hour"_s);
    return tens % 60 == 0 ? hours : hours + u' ' + counted(tens % 60, u"minute"_s);
}

QString roughSizeText(double bytes) {
    constexpr double kilo = 1000;
    double value = std::max(bytes, 0.0) / kilo / kilo;
    if (value < 1)
        return u"less than 1 MB"_s;
    QString unit = u"MB"_s;
    if (value >= 995) {
        value /= kilo;
        unit = u"GB"_s;
    }
    // Two figures.
    const double step = std::pow(10.0, std::floor(std::log10(value)) - 1);
    const double rounded = std::round(value / step) * step;
    return u"about %1 %2"_s.arg(figures().toString(rounded, 'f', rounded < 10 ? 1 : 0), unit);
}

QString photoCountText(std::int64_t count) {
    return counted(count, u"photo"_s);
}

QString secondsText(double seconds) {
    return u"%1 s"_s.arg(figures().toString(std::round(seconds * 100) / 100, 'g', 6));
}

} // namespace Sheets
