// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/Provenance.h>

namespace ProjectModel {

std::string_view rawValue(Provenance provenance) {
    switch (provenance) {
    case Provenance::proposed:
        return "proposed";
    case Provenance::geocoded:
        return "geocoded";
    case Provenance::inferred:
        return "inferred";
    case Provenance::generated:
        return "generated";
    case Provenance::user:
        return "user";
    }
    return {};
}

std::optional<Provenance> provenanceFromRawValue(std::string_view text) {
    for (const Provenance provenance : {Provenance::proposed, Provenance::geocoded, Provenance::inferred,
                                        Provenance::generated, Provenance::user}) {
        if (rawValue(provenance) == text)
            return provenance;
    }
    return std::nullopt;
}

} // namespace ProjectModel
