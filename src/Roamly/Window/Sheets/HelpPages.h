// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <vector>

namespace Sheets {

/// One page of the help.
struct HelpPage {
    /// Of the file, "first-film".
    QString name;
    /// "First film".
    QString title;
    QString html;
};

/// In the order of the list.
[[nodiscard]] const std::vector<HelpPage>& helpPages();

/// The pages that have all the words in their title or text, whatever their case; all pages for no words.
[[nodiscard]] std::vector<const HelpPage*> findHelpPages(const QString& words);

} // namespace Sheets
