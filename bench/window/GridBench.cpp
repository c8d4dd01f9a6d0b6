// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/Project.h>
#include <Roamly/Window/Grid/PhotoGridView.h>
#include <Roamly/Window/Grid/PhotoListModel.h>
#include <Roamly/Window/Grid/ThumbnailFeed.h>

#include <QApplication>
#include <QFile>
#include <QListView>
#include <QScrollBar>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using Foundation::Uuid;
using ProjectModel::Project;

/// Milliseconds of CPU that this thread has used.
double cpuMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

double cost(const std::function<void()>& work) {
    const double start = cpuMilliseconds();
    work();
    return cpuMilliseconds() - start;
}

double residentMegabytes() {
    QFile status{QStringLiteral("/proc/self/statm")};
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> pages = status.readAll().split(' ');
    return pages.value(1).toDouble() * 4096 / (1 << 20);
}

/// Thumbnails that are all in memory, a few pictures in turn.
class ReadyFeed : public Grid::ThumbnailFeed {
public:
    ReadyFeed() {
        for (int number = 0; number < 16; ++number) {
            QImage image{256, number % 3 == 0 ? 256 : 192, QImage::Format_RGB32};
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x)
                    image.setPixel(x, y, qRgb((x * number) & 0xff, (y * 3) & 0xff, (x ^ y) & 0xff));
            }
            m_images.push_back(std::move(image));
        }
    }
    QImage thumbnail(const ProjectModel::PhotoItem& photo, int /*pixels*/) override {
        return m_images[photo.id.bytes[3] % m_images.size()];
    }
    void wanted(std::span<const Uuid> /*visible*/) override {}

private:
    std::vector<QImage> m_images;
};

/// The same rows with the same thumbnails for the stock view.
class StockModel : public Grid::PhotoListModel {
public:
    explicit StockModel(ReadyFeed& feed)
        : m_feed(&feed) {}
    QVariant data(const QModelIndex& index, int role) const override {
        if (role == Qt::DecorationRole)
            return m_feed->thumbnail(photo(index.row()), 256).scaled(192, 192, Qt::KeepAspectRatio);
        return PhotoListModel::data(index, role);
    }

private:
    ReadyFeed* m_feed;
};

Project projectOf(int count) {
    Project project;
    for (int number = 0; number < count; ++number) {
        ProjectModel::PhotoItem photo{};
        photo.id = Uuid::random();
        photo.source = ProjectModel::FilePhotoRef{{}, "IMG_" + std::to_string(number) + ".jpg"};
        photo.captureDate = Foundation::Instant{std::chrono::seconds{1'700'000'000 + number * 60}};
        photo.location = ProjectModel::ResolvedLocation{"City " + std::to_string(number / 60), "Country",
                                                        number % 5 == 0 ? ProjectModel::Provenance::inferred
                                                                        : ProjectModel::Provenance::geocoded};
        photo.isSelected = number % 3 != 0;
        if (number % 4 == 0)
            photo.caption = "The yellow tram climbs the hill in the evening light " + std::to_string(number);
        project.photos.push_back(std::move(photo));
    }
    return project;
}

/// On screen, so that painting paints.
void expose(QWidget& view) {
    view.resize(1600, 900);
    view.show();
    while (!view.windowHandle()->isExposed())
        QApplication::processEvents();
}

struct Frames {
    double mean = 0;
    double worst = 0;
};

/// Scrolls by 40 pixels a frame, as a wheel that is turned fast does, and paints each.
Frames scrolled(QAbstractItemView& view) {
    constexpr int frames = 300;
    Frames result;
    for (int frame = 0; frame < frames; ++frame) {
        const double spent = cost([&] {
            view.verticalScrollBar()->setValue(frame * 40);
            view.viewport()->repaint();
        });
        result.mean += spent / frames;
        result.worst = std::max(result.worst, spent);
    }
    return result;
}

} // namespace

int main(int argc, char* argv[]) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application{argc, argv};
    const int count = argc > 1 ? std::atoi(argv[1]) : 20'000;
    const Project project = projectOf(count);
    ReadyFeed feed;
    std::printf("%d photos, 1600x900, CPU of the window's thread\n", count);

    const double before = residentMegabytes();
    Grid::PhotoListModel model;
    Grid::PhotoGridView grid{model, feed};
    expose(grid);
    std::printf("grid   rows shown first         %8.2f ms\n", cost([&] { model.show(project); }));
    std::printf("grid   layout                   %8.2f ms\n", cost([&] { grid.doItemsLayout(); }));
    std::printf("grid   first frame              %8.2f ms\n", cost([&] { grid.viewport()->repaint(); }));
    const Frames own = scrolled(grid);
    std::printf("grid   a frame of scrolling     %8.2f ms, worst %.2f ms\n", own.mean, own.worst);
    std::printf("grid   select all               %8.2f ms\n", cost([&] { grid.selectAll(); }));
    Project changed = project;
    for (std::size_t position = 0; position < changed.photos.size(); position += 2)
        changed.photos[position].isSelected = !changed.photos[position].isSelected;
    std::printf("grid   every second decided     %8.2f ms\n", cost([&] { model.show(changed); }));
    std::set<Uuid> removed;
    for (std::size_t position = 0; position < changed.photos.size(); position += 2)
        removed.insert(changed.photos[position].id);
    changed.removePhotos(removed);
    std::printf("grid   every second removed     %8.2f ms\n", cost([&] {
                    model.show(changed);
                    grid.doItemsLayout();
                }));
    std::printf("grid   all back                 %8.2f ms\n", cost([&] {
                    model.show(project);
                    grid.doItemsLayout();
                }));
    std::printf("grid   memory                   %8.1f MB\n", residentMegabytes() - before);

    const double beforeStock = residentMegabytes();
    StockModel stockModel{feed};
    QListView stock;
    stock.setViewMode(QListView::IconMode);
    stock.setResizeMode(QListView::Adjust);
    stock.setUniformItemSizes(true);
    stock.setGridSize({204, 230});
    stock.setIconSize({192, 192});
    stock.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    stock.setModel(&stockModel);
    expose(stock);
    stockModel.show(project);
    std::printf("stock  layout                   %8.2f ms\n", cost([&] { stock.doItemsLayout(); }));
    stock.viewport()->repaint();
    const Frames peer = scrolled(stock);
    std::printf("stock  a frame of scrolling     %8.2f ms, worst %.2f ms\n", peer.mean, peer.worst);
    std::printf("stock  memory                   %8.1f MB\n", residentMegabytes() - beforeStock);
    std::printf("grid / stock                    %8.2f\n", own.mean / peer.mean);
    return 0;
}
