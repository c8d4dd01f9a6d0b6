// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <filesystem>
#include <functional>
#include <optional>

namespace Shell {

enum class SaveAnswer { Save, Discard, Cancel };
/// What becomes of a document whose file another program changed.
enum class ChangedFileAnswer { KeepMine, LoadTheFiles, Cancel };

/// What a document asks its user. Each shows its question and returns at once; the answer comes by the
/// function handed in, at most once.
struct DocumentQuestions {
    std::function<void(const QString& name, std::function<void(SaveAnswer)> answer)> saveChanges;
    std::function<void(const QString& name, std::function<void(ChangedFileAnswer)> answer)> fileChanged;
    /// `sentence` says why the file as it is does not do; it may be empty. `proposed` is a file name.
    std::function<void(const QString& sentence, const std::filesystem::path& proposed,
                       std::function<void(std::filesystem::path)> chosen)>
        whereToSave;
    /// Something could not be done.
    std::function<void(const QString& sentence)> tell;
};

} // namespace Shell
