// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Edits a large open document as a window does, with a listener that follows, and measures what the edit, its
// undo and its redo take, with what the step is said to hold and what it holds of the heap. The best of the
// rounds counts. Usage: bench-document [photos] [rounds]

#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Document/ReviewModel.h>

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

using Document::ProjectDocument;
using Document::ReviewModel;
using ProjectModel::PhotoItem;
using ProjectModel::Project;

/// A photo as an analysed and captioned trip has them, with a bookmark of a path.
PhotoItem photo(std::mt19937_64& engine, std::size_t number) {
    const std::string path = "/home/someone/Pictures/Holidays/2024-05 Portugal/Camera/DSC_" +
                             std::to_string(100'000 + number) + ".JPG";
    Foundation::Uuid id;
    for (std::uint8_t& byte : id.bytes)
        byte = static_cast<std::uint8_t>(engine());
    return {
        .id = id,
        .source = ProjectModel::FilePhotoRef{.bookmark = {path.begin(), path.end()},
                                             .displayName = "DSC_" + std::to_string(number) + ".JPG"},
        .captureDate = Foundation::Instant{std::chrono::seconds{1'714'521'600 + engine() % 1'000'000}},
        .coordinate = ProjectModel::Coordinate{38.7, -9.1},
        .location = ProjectModel::ResolvedLocation{"Lisbon", "Portugal", ProjectModel::Provenance::geocoded},
        .clusterID = std::nullopt,
        .qualityScore = 0.5,
        .caption = "A tram climbs the hill between tiled houses.",
        .captionProvenance = ProjectModel::Provenance::generated,
        .isSelected = true,
        .selectionProvenance = ProjectModel::Provenance::proposed,
        .isMissing = false,
        .sourceID = std::nullopt,
    };
}

double milliseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>{std::chrono::steady_clock::now() - start}.count();
}

struct Row {
    double edit = 1e9;
    double undo = 1e9;
    double redo = 1e9;
    double said = 0; // MiB
    double held = 0; // MiB
};

double mebibytes(std::size_t bytes) {
    return static_cast<double>(bytes) / (1024.0 * 1024.0);
}

std::size_t heap() {
    const struct mallinfo2 info = ::mallinfo2();
    return info.uordblks + info.hblkhd;
}

/// What a listener, such as a grid, has to do at least.
struct Follower {
    std::size_t touched = 0;
    ProjectDocument::Subscription listening;

    explicit Follower(ProjectDocument& document)
        : listening(document.addListener([this](const Document::ProjectDifference& found) {
            touched +=
                found.removed.size() + found.order.size() + found.inserted.size() + found.changed.size();
        })) {}
};

Row measured(const Project& project, int rounds, const std::function<void(ReviewModel&)>& gesture) {
    Row row;
    for (int round = 0; round < rounds; ++round) {
        ProjectDocument document{project};
        const Follower follower{document};
        ReviewModel review{document};
        row.edit = std::min(row.edit, milliseconds([&] {
                                gesture(review);
                                (void)document.isModified();
                            }));
        row.undo = std::min(row.undo, milliseconds([&] {
                                document.undo();
                                (void)document.isModified();
                            }));
        row.redo = std::min(row.redo, milliseconds([&] {
                                document.redo();
                                (void)document.isModified();
                            }));
        if (follower.touched == 0 || document.canRedo())
            std::exit(1);
        const Document::ProjectDifference step = Document::difference(project, document.project());
        const std::size_t before = heap();
        const Document::ProjectDifference copy{step};
        row.said = mebibytes(step.bytes());
        row.held = mebibytes(heap() - before + sizeof copy);
    }
    return row;
}

} // namespace

int main(int argc, char** argv) {
    const std::size_t count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 20'000;
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 5;
    if (count < 2 || rounds < 1) {
        std::fprintf(stderr, "Usage: bench-document [photos] [rounds]\n");
        return 1;
    }
    std::mt19937_64 engine{1};
    Project project;
    std::set<Foundation::Uuid> all;
    std::set<Foundation::Uuid> half;
    for (std::size_t i = 0; i < count; ++i) {
        project.photos.push_back(photo(engine, i));
        all.insert(project.photos.back().id);
        if (i % 2 == 0)
            half.insert(project.photos.back().id);
    }
    Project sorted = project;
    sorted.applyChronologicalOrder();
    project.markManuallyOrdered();

    std::printf("%zu photos, best of %d\n\n", count, rounds);
    std::printf("%-28s %9s %9s %9s %11s %11s\n", "gesture", "edit ms", "undo ms", "redo ms", "step MiB",
                "heap MiB");
    const auto print = [&](const char* name, const Project& start,
                           const std::function<void(ReviewModel&)>& gesture) {
        const Row row = measured(start, rounds, gesture);
        std::printf("%-28s %9.2f %9.2f %9.2f %11.3f %11.3f\n", name, row.edit, row.undo, row.redo, row.said,
                    row.held);
    };
    const Foundation::Uuid middle = sorted.photos[count / 2].id;
    print("type one caption", sorted, [&](ReviewModel& review) { review.setCaption("x", middle); });
    print("type its second letter", sorted, [&](ReviewModel& review) {
        review.setCaption("x", middle);
        review.setCaption("xy", middle);
    });
    print("leave one out", sorted, [&](ReviewModel& review) { review.toggleSelection(middle); });
    print("leave all out", sorted, [&](ReviewModel& review) { review.setSelection(false, all); });
    print("name all places", sorted, [&](ReviewModel& review) { review.setPlace("Porto", "", all); });
    print("move the first to the end", sorted, [&](ReviewModel& review) { review.movePhotos({0}, count); });
    print("remove one", sorted, [&](ReviewModel& review) { review.removePhotos({middle}); });
    print("remove half", sorted, [&](ReviewModel& review) { review.removePhotos(half); });
    print("sort by date", project, [&](ReviewModel& review) { review.sortByDate(); });
    return 0;
}
