// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/DataFile.h>
#include <Foundation/AtomicFile.h>
#include <Roamly/CommandLine/Version.h>

namespace CommandLine {

std::string versionText() {
    return "roamly " ROAMLY_VERSION "\n"
           "Licensed under the GNU General Public License, version 3 or later. There is no warranty.\n";
}

std::string licencesText() {
    return Foundation::readFile(Analysis::dataFile("licences.txt"));
}

} // namespace CommandLine
