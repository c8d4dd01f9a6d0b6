// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/OwnOrDefault.h>
#include <Roamly/Window/Sheets/Quantities.h>

#include <QLineEdit>
#include <QSignalBlocker>
#include <utility>

using namespace Qt::StringLiterals;

namespace Sheets {

namespace {

constexpr double leastSeconds = 0.1;
constexpr double mostSeconds = 3600;

/// The number in "4.5 s", "4,5" or "4.5"; nothing unless it is above zero.
std::optional<double> secondsOf(const QString& text) {
    bool isNumber = false;
    QString number = text;
    const double seconds = number.remove(u's').trimmed().replace(u',', u'.').toDouble(&isNumber);
    return isNumber && seconds > 0 ? std::optional{seconds} : std::nullopt;
}

} // namespace

QString defaultText(const QString& value) {
    // A name with brackets of its own would nest them.
    QString inner = value;
    inner.replace(u" ("_s, u", "_s).remove(u')');
    return u"Default (%1)"_s.arg(inner);
}

OwnOrDefaultChoice::OwnOrDefaultChoice(const QString& name, const QStringList& choices, int defaultIndex,
                                       std::optional<int> own) {
    setAccessibleName(name);
    addItem(defaultText(choices.value(defaultIndex)));
    addItems(choices);
    setOwn(own);
    connect(this, &QComboBox::activated, this, &OwnOrDefaultChoice::chosen);
}

std::optional<int> OwnOrDefaultChoice::own() const {
    return currentIndex() > 0 ? std::optional{currentIndex() - 1} : std::nullopt;
}

void OwnOrDefaultChoice::setOwn(std::optional<int> own) {
    setCurrentIndex(own ? *own + 1 : 0);
}

OwnOrDefaultSeconds::OwnOrDefaultSeconds(const QString& name, double defaultSeconds,
                                         std::optional<double> own)
    : m_default(defaultSeconds) {
    setAccessibleName(name);
    setRange(leastSeconds, mostSeconds);
    setDecimals(2);
    setSingleStep(0.5);
    setKeyboardTracking(false);
    setOwn(own);
    connect(lineEdit(), &QLineEdit::textEdited, this, [this](const QString& text) { m_typed = text; });
    connect(this, &QAbstractSpinBox::editingFinished, this, &OwnOrDefaultSeconds::commitText);
}

void OwnOrDefaultSeconds::setOwn(std::optional<double> own) {
    m_typed.reset();
    const QSignalBlocker quiet{this};
    m_own = own;
    setValue(own.value_or(m_default));
    // The value may be the one there was, and yet be told in other words now.
    lineEdit()->setText(textFromValue(value()));
}

void OwnOrDefaultSeconds::take(std::optional<double> own) {
    if (own == m_own)
        return;
    setOwn(own);
    Q_EMIT edited();
}

QString OwnOrDefaultSeconds::textFromValue(double value) const {
    return m_own ? secondsText(value) : defaultText(secondsText(value));
}

double OwnOrDefaultSeconds::valueFromText(const QString& text) const {
    return secondsOf(text).value_or(m_default);
}

QValidator::State OwnOrDefaultSeconds::validate(QString& /*input*/, int& /*position*/) const {
    // Whatever is typed is read when it is complete; what is no number means the default.
    return QValidator::Acceptable;
}

void OwnOrDefaultSeconds::stepBy(int steps) {
    take(qBound(leastSeconds, value() + steps * singleStep(), mostSeconds));
    selectAll();
}

void OwnOrDefaultSeconds::commitText() {
    const std::optional<QString> typed = std::exchange(m_typed, std::nullopt);
    if (!typed)
        return;
    const std::optional<double> seconds = secondsOf(*typed);
    take(seconds ? std::optional{qBound(leastSeconds, *seconds, mostSeconds)} : std::nullopt);
    // Also where nothing changed, what was typed gives way to how it is said.
    setOwn(m_own);
}

} // namespace Sheets
