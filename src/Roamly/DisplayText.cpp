#include <Foundation/Bytes.h>
#include <Roamly/DisplayText.h>

#include <QString>

namespace Roamly {

std::string displayText(const std::filesystem::path& path) {
    const std::string& bytes = path.native();
    if (Foundation::isValidUtf8(bytes))
        return bytes;
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size())).toStdString();
}

} // namespace Roamly
