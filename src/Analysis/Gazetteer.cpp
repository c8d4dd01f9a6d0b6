#include <Analysis/Gazetteer.h>
#include <Analysis/OfflineReverseGeocoder.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bit>

namespace Analysis {

namespace {

using namespace GazetteerFormat;

constexpr const char* remedy = "build Roamly again, or reinstall it, to get it back";

std::span<const std::byte> mapped(const std::filesystem::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        throw GazetteerError("The file of place names " + file.string() + " is missing or cannot be read; " +
                             remedy + ".");
    struct stat status {};
    void* address = MAP_FAILED;
    std::size_t size = 0;
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0) {
        size = static_cast<std::size_t>(status.st_size);
        address = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
    }
    ::close(descriptor);
    if (address == MAP_FAILED)
        throw GazetteerError("The file of place names " + file.string() + " is damaged; " + remedy + ".");
    return {static_cast<const std::byte*>(address), size};
}

bool isIntact(std::span<const std::byte> bytes) {
    if (bytes.size() < sizeof(Header))
        return false;
    const auto& header = *reinterpret_cast<const Header*>(bytes.data());
    if (header.magic != magic || header.sectionCount != sectionCount || header.fileSize != bytes.size() ||
        header.tableChecksum != checksum(std::as_bytes(std::span(header.sections))))
        return false;
    return std::all_of(header.sections.begin(), header.sections.end(), [&](const Section& section) {
        return section.offset % 8 == 0 && section.offset <= bytes.size() &&
               section.size <= bytes.size() - section.offset &&
               section.checksum == checksum(bytes.subspan(section.offset, section.size));
    });
}

} // namespace

template <typename Record>
std::span<const Record> Gazetteer::section(SectionKind kind) const {
    const auto& header = *reinterpret_cast<const Header*>(m_bytes.data());
    const Section& section = header.sections[static_cast<std::size_t>(kind)];
    return {reinterpret_cast<const Record*>(m_bytes.data() + section.offset), section.size / sizeof(Record)};
}

Gazetteer::Gazetteer(const std::filesystem::path& file)
    : m_bytes(mapped(file)) {
    try {
        readSections(file);
    } catch (...) {
        ::munmap(const_cast<std::byte*>(m_bytes.data()), m_bytes.size());
        throw;
    }
}

Gazetteer::~Gazetteer() {
    ::munmap(const_cast<std::byte*>(m_bytes.data()), m_bytes.size());
}

void Gazetteer::readSections(const std::filesystem::path& file) {
    static_assert(std::endian::native == std::endian::little, "the file is used as it lies");
    const auto& header = *reinterpret_cast<const Header*>(m_bytes.data());
    if (m_bytes.size() >= sizeof(Header) && header.magic == magic && header.version != version)
        throw GazetteerError("The file of place names " + file.string() +
                             " belongs to another version of Roamly; " + remedy + ".");
    if (!isIntact(m_bytes))
        throw GazetteerError("The file of place names " + file.string() + " is damaged; " + remedy + ".");

    m_towns = section<Town>(SectionKind::Towns);
    m_texts = section<char>(SectionKind::Texts);
    m_countries = section<Country>(SectionKind::Countries);
    m_firstLevelAreas = section<std::uint32_t>(SectionKind::FirstLevelAreas);
    m_secondLevelAreas = section<std::uint32_t>(SectionKind::SecondLevelAreas);
    m_regions = section<Region>(SectionKind::Regions);
    m_borderShapes = section<std::uint16_t>(SectionKind::BorderShapes);
    m_landBorderShapes = section<std::uint16_t>(SectionKind::LandBorderShapes);
    m_townIndex = TownIndex(m_towns);
    m_borders = PolygonLayer(
        section<Vertex>(SectionKind::BorderVertices), section<std::uint32_t>(SectionKind::BorderCellStarts),
        section<CellEntry>(SectionKind::BorderCellEntries), section<std::uint32_t>(SectionKind::BorderEdges));
    m_landBorders = PolygonLayer(section<Vertex>(SectionKind::LandBorderVertices),
                                 section<std::uint32_t>(SectionKind::LandBorderCellStarts),
                                 section<CellEntry>(SectionKind::LandBorderCellEntries),
                                 section<std::uint32_t>(SectionKind::LandBorderEdges));
    m_regionLayer = PolygonLayer(
        section<Vertex>(SectionKind::RegionVertices), section<std::uint32_t>(SectionKind::RegionCellStarts),
        section<CellEntry>(SectionKind::RegionCellEntries), section<std::uint32_t>(SectionKind::RegionEdges));
}

std::string_view Gazetteer::text(std::uint32_t position) const {
    if (position >= m_texts.size())
        return {};
    const auto begin = m_texts.begin() + position;
    return {begin, std::find(begin, m_texts.end(), '\0')};
}

} // namespace Analysis
