// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Makes the files of src/Analysis/GazetteerFormat.h from tables of GeoNames, polygons and country names.
//
//   gazetteer-builder PACKAGES CORRECTIONS GAZETTEER LAND-BORDERS
//
// PACKAGES is what tools/fetch-data prints, CORRECTIONS the folder with the manifest of packages and our own
// tables (data/), the others are what is written.

#include "GazetteerFile.h"
#include "KnownAnswers.h"
#include "LandBordersFile.h"
#include "Sources.h"

#include <Foundation/AtomicFile.h>

#include <cstdio>
#include <exception>
#include <filesystem>

namespace {

void make(const GazetteerBuilder::Sources& sources, const std::filesystem::path& gazetteer,
          const std::filesystem::path& landBorders) {
    Foundation::writeFileAtomically(landBorders, GazetteerBuilder::landBordersFile(sources));
    Foundation::writeFileAtomically(gazetteer, GazetteerBuilder::gazetteerFile(sources));
    try {
        GazetteerBuilder::checkAnswers(gazetteer, landBorders, sources.correction("gazetteer-answers.tsv"));
    } catch (...) {
        // Or the next build would take them for good.
        std::filesystem::remove(gazetteer);
        std::filesystem::remove(landBorders);
        throw;
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fputs("usage: gazetteer-builder PACKAGES CORRECTIONS GAZETTEER LAND-BORDERS\n", stderr);
        return 2;
    }
    try {
        make(GazetteerBuilder::Sources(argv[1], argv[2]), argv[3], argv[4]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "gazetteer-builder: %s\n", error.what());
        return 1;
    }
    return 0;
}
