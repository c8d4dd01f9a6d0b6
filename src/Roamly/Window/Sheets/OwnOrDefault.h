// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QString>
#include <QStringList>
#include <optional>

namespace Sheets {

/// A choice that is either the project's own or the user's default: "Default (On)", "On", "Off".
class OwnOrDefaultChoice : public QComboBox {
    Q_OBJECT
public:
    /// `defaultIndex` is the user's default among the choices.
    OwnOrDefaultChoice(const QString& name, const QStringList& choices, int defaultIndex,
                       std::optional<int> own);

    [[nodiscard]] std::optional<int> own() const;
    void setOwn(std::optional<int> own);

Q_SIGNALS:
    void chosen();
};

/// Seconds that are either the project's own or the user's default: "Default (5 s)".
class OwnOrDefaultSeconds : public QDoubleSpinBox {
    Q_OBJECT
public:
    OwnOrDefaultSeconds(const QString& name, double defaultSeconds, std::optional<double> own);

    [[nodiscard]] std::optional<double> own() const { return m_own; }
    void setOwn(std::optional<double> own);

    [[nodiscard]] QString textFromValue(double value) const override;
    [[nodiscard]] double valueFromText(const QString& text) const override;
    [[nodiscard]] QValidator::State validate(QString& input, int& position) const override;
    void stepBy(int steps) override;

Q_SIGNALS:
    void edited();

private:
    void take(std::optional<double> own);
    void commitText();

    double m_default;
    /// Exactly as it was given; what is shown is rounded.
    std::optional<double> m_own;
    /// What was typed and is not taken yet; the field itself rewrites its text before it tells that editing
    /// ended.
    std::optional<QString> m_typed;
};

/// "Default (5 s)".
[[nodiscard]] QString defaultText(const QString& value);

} // namespace Sheets
