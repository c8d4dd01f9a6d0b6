// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <Roamly/Document/ProjectDocument.h>

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace Document {

/// What the user does to photos while reviewing them, as the user's own decisions. An unknown photo changes
/// nothing. Borrows the document.
class ReviewModel {
public:
    explicit ReviewModel(ProjectDocument& document)
        : m_document(&document) {}

    [[nodiscard]] std::size_t selectedCount() const;

    void toggleSelection(const Foundation::Uuid& id);
    void setSelection(bool isSelected, const std::set<Foundation::Uuid>& ids);

    /// Photos that are all in the film are left out; otherwise all of them come in.
    void toggleSelections(const std::set<Foundation::Uuid>& ids);

    /// Stores the caption without white space at its ends; one that is nothing else clears the caption.
    void setCaption(std::string_view text, const Foundation::Uuid& id);

    /// The place as the user names it, without white space at the ends of the names; a name that is nothing
    /// else is none, and without city and country the photos have no place.
    void setPlace(const std::optional<std::string>& city, const std::optional<std::string>& country,
                  const std::set<Foundation::Uuid>& ids);

    /// Moves the photos at the positions to before the one now at `destination` (the list's length means the
    /// end). From then on nothing sorts the photos any more. Positions must lie in the list.
    void movePhotos(const std::set<std::size_t>& positions, std::size_t destination);

    /// Moves the photos to before, or after, another one of the list, which may be one of them. Photos that
    /// stand there already are no step: the order stays what it was, made by hand or not.
    void movePhotos(const std::set<Foundation::Uuid>& ids, const Foundation::Uuid& neighbour, bool isAfter);

    /// Takes the order made by hand back.
    void sortByDate();

    void removePhotos(const std::set<Foundation::Uuid>& ids);

private:
    ProjectDocument* m_document;
};

} // namespace Document
