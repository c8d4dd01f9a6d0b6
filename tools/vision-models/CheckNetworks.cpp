// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Shows the networks a picture and compares what they answer with known answers.
//
//     check-networks FOLDER ANSWERS
//
// FOLDER holds the network files, ANSWERS is data/network-answers.tsv, which describes itself.

#include <Analysis/ImageNetwork.h>

#include <cmath>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct KnownAnswer {
    std::string file;
    int side = 0;
    std::string output;
    std::size_t number = 0;
    double value = 0;
    double tolerance = 0;
};

std::vector<KnownAnswer> knownAnswers(const std::filesystem::path& file) {
    std::vector<KnownAnswer> answers;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with('#'))
            continue;
        KnownAnswer answer;
        std::istringstream words(line);
        if (!(words >> answer.file >> answer.side >> answer.output >> answer.number >> answer.value >>
              answer.tolerance))
            throw std::runtime_error("cannot read \"" + line + "\" in " + file.string());
        answers.push_back(answer);
    }
    if (answers.empty())
        throw std::runtime_error("there are no answers in " + file.string());
    return answers;
}

/// Slopes of red and green, and a chessboard of blue.
std::vector<float> chessboard(int side) {
    std::vector<float> planes;
    for (int channel = 0; channel < 3; ++channel) {
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                const int slope = (channel == 0 ? x : y) * 255 / (side - 1);
                const int field = (x / 16 + y / 16) % 2 == 1 ? 255 : 0;
                planes.push_back(static_cast<float>(channel < 2 ? slope : field));
            }
        }
    }
    return planes;
}

void check(const std::filesystem::path& folder, const KnownAnswer& known) {
    const Analysis::ImageNetwork network(folder / known.file, known.side, {{known.output, 0}});
    const auto numbers = network.run(chessboard(known.side)).front();
    const double value = known.number < numbers.size() ? static_cast<double>(numbers[known.number]) : NAN;
    if (!(std::abs(value - known.value) <= known.tolerance))
        throw std::runtime_error((folder / known.file).string() + " answers " + std::to_string(value) +
                                 " where " + known.output + " " + std::to_string(known.number) + " is " +
                                 std::to_string(known.value));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: check-networks FOLDER ANSWERS\n");
        return 2;
    }
    try {
        for (const KnownAnswer& known : knownAnswers(argv[2]))
            check(argv[1], known);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "roamly set-up: %s\n", error.what());
        return 1;
    }
    return 0;
}
