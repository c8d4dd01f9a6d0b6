// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Jobs/Job.h>

#include <QMetaObject>
#include <QObject>
#include <utility>

namespace Shell {

/// Carries functions over to the thread of an object, which must outlive whoever posts them.
[[nodiscard]] inline Jobs::Executor executorOf(QObject* object) {
    return [object](std::function<void()> action) {
        QMetaObject::invokeMethod(object, std::move(action), Qt::QueuedConnection);
    };
}

} // namespace Shell
