// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QWidget>
#include <functional>

class QLabel;
class QPushButton;

namespace Sheets {

struct ConnectionStatus {
    bool isGood = false;
    /// What to show.
    QString text;
};

/// Tests a connection without waiting for it: returns at once and calls `done` later, on the GUI thread, or
/// never.
using ConnectionTest = std::function<void(std::function<void(const ConnectionStatus&)> done)>;

/// A "Test Connection" button with what came of the last test.
class ConnectionTestRow : public QWidget {
    Q_OBJECT
public:
    /// `backend` is what the test is of, for those who hear the button.
    ConnectionTestRow(const QString& backend, ConnectionTest test);

    /// The fields have changed: what is shown does not hold for them, nor does a test under way.
    void forget();

private:
    void run();
    void show(const ConnectionStatus& status);

    ConnectionTest m_test;
    QPushButton* m_button;
    QLabel* m_status;
    /// Counts the tests, so that late answers of earlier ones are told apart.
    int m_run = 0;
};

} // namespace Sheets
