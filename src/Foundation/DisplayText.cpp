// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bytes.h>
#include <Foundation/DisplayText.h>

#include <algorithm>
#include <string_view>

namespace Foundation {

std::string displayText(const std::filesystem::path& path) {
    const std::string& name = path.native();
    if (isValidUtf8(name))
        return name;
    std::string result;
    std::string_view rest = name;
    while (!rest.empty()) {
        std::size_t length = std::min<std::size_t>(4, rest.size());
        while (length > 0 && !isValidUtf8(rest.substr(0, length)))
            --length;
        if (length == 0)
            result += "\xEF\xBF\xBD";
        else
            result += rest.substr(0, length);
        rest.remove_prefix(std::max<std::size_t>(1, length));
    }
    return result;
}

std::string quotedText(const std::filesystem::path& path) {
    return "“" + displayText(path) + "”";
}

} // namespace Foundation
