// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Jobs/PhotoFileCheck.h>

#include <QObject>
#include <QString>
#include <filesystem>

namespace Shell {

/// Keeps what a document knows of its photos' files true: looks for them when the project opens, and where
/// the user says. What it finds is no step and no modification.
class MissingPhotos : public QObject {
    Q_OBJECT

public:
    /// Borrows the document.
    MissingPhotos(Document::ProjectDocument& document, Jobs::PhotoFileEnvironment environment,
                  QObject* parent = nullptr);
    ~MissingPhotos() override;

    void check();
    void locate(const std::filesystem::path& folder);

Q_SIGNALS:
    /// What came of a search that the user asked for.
    void noticed(const QString& text);

private:
    Document::ProjectDocument* m_document;
    Jobs::PhotoFileCheck m_search;
};

/// "3 photos are missing."; nothing for none.
[[nodiscard]] QString missingSentence(std::size_t count);

} // namespace Shell
