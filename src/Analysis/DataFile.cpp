// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/DataFile.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

namespace Analysis {

std::filesystem::path dataFile(std::string_view name) {
    std::error_code error;
    std::vector<std::filesystem::path> shares;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error) {
        // The program lies in bin/, the window in lib/roamly/.
        const auto above = program.parent_path().parent_path();
        shares.push_back(above / "share");
        if (above.filename() == "lib")
            shares.push_back(above.parent_path() / "share");
    }
    const char* folders = std::getenv("XDG_DATA_DIRS");
    std::istringstream list(folders && *folders ? folders : "/usr/local/share:/usr/share");
    for (std::string folder; std::getline(list, folder, ':');) {
        if (!folder.empty())
            shares.emplace_back(folder);
    }

    for (const auto& share : shares) {
        auto candidate = share / "roamly" / name;
        if (std::filesystem::exists(candidate, error))
            return candidate;
    }
    return (shares.empty() ? std::filesystem::path("/usr/share") : shares.front()) / "roamly" / name;
}

} // namespace Analysis
