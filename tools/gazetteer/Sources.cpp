// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Sources.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace GazetteerBuilder {

namespace {

nlohmann::json manifestEntry(const std::filesystem::path& manifest, const std::string& name) {
    std::ifstream stream(manifest);
    if (!stream)
        throw std::runtime_error("cannot read " + manifest.string());
    const auto document = nlohmann::json::parse(stream);
    for (const auto& package : document.at("packages")) {
        if (package.at("name") == name)
            return package;
    }
    throw std::runtime_error(manifest.string() + " lists no package " + name);
}

} // namespace

Sources::Sources(std::filesystem::path packages, std::filesystem::path corrections)
    : m_packages(std::move(packages))
    , m_corrections(std::move(corrections)) {}

std::filesystem::path Sources::package(const std::string& name) const {
    std::string folder =
        name + "@" + manifestEntry(correction("manifest.json"), name).at("version").get<std::string>();
    std::replace(folder.begin(), folder.end(), '/', '+');
    return m_packages / folder;
}

std::string Sources::attribution(const std::string& name) const {
    return manifestEntry(correction("manifest.json"), name).at("attribution");
}

std::filesystem::path Sources::correction(const std::string& name) const {
    return m_corrections / name;
}

} // namespace GazetteerBuilder
