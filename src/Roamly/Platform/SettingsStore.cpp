#include <Foundation/Bytes.h>
#include <Roamly/Document/SettingValue.h>
#include <Roamly/Platform/SettingsStore.h>
#include <Roamly/Platform/UserFolders.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QSettings>
#include <QString>
#include <QStringList>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace Platform {

namespace {

using Foundation::JsonWriter;

/// Stores a parsed value where it belongs; false when there is none.
template <typename Target, typename Value>
bool put(Target& target, std::optional<Value> value) {
    if (!value)
        return false;
    target = *std::move(value);
    return true;
}

template <auto Member>
bool assignBoolean(Document::AppSettings& settings, std::string_view text) {
    return put(settings.*Member, Document::SettingValue::boolean(text));
}

template <auto Member, auto Parse>
bool assignChoice(Document::AppSettings& settings, std::string_view text) {
    return put(settings.*Member, Parse(text));
}

/// A name that a server will be asked for. An empty one is a value like any other, not the default.
template <auto Member>
bool assignName(Document::AppSettings& settings, std::string_view text) {
    if (!Foundation::isValidUtf8(text))
        return false;
    settings.*Member = std::string{text};
    return true;
}

template <auto Member>
std::optional<std::string> booleanText(const Document::AppSettings& settings) {
    return settings.*Member ? "true" : "false";
}

template <auto Member>
std::optional<std::string> choiceText(const Document::AppSettings& settings) {
    return std::string{rawValue(settings.*Member)};
}

template <auto Member>
std::optional<std::string> plainText(const Document::AppSettings& settings) {
    return settings.*Member;
}

template <auto Member>
void writeValue(JsonWriter& json, const Document::AppSettings& settings) {
    json.value(settings.*Member);
}

template <auto Member>
void writeOptional(JsonWriter& json, const Document::AppSettings& settings) {
    if (settings.*Member)
        json.value(*(settings.*Member));
    else
        json.null();
}

template <auto Member>
void writeChoice(JsonWriter& json, const Document::AppSettings& settings) {
    json.value(rawValue(settings.*Member));
}

template <auto Member>
constexpr SettingKey booleanKey(std::string_view name, std::string_view summary) {
    return {name, "true or false", summary, assignBoolean<Member>, booleanText<Member>, writeValue<Member>};
}

template <auto Member, auto Parse>
constexpr SettingKey choiceKey(std::string_view name, std::string_view accepts, std::string_view summary) {
    return {name, accepts, summary, assignChoice<Member, Parse>, choiceText<Member>, writeChoice<Member>};
}

template <auto Member>
constexpr SettingKey nameKey(std::string_view name, std::string_view summary) {
    return {name, "a name", summary, assignName<Member>, plainText<Member>, writeValue<Member>};
}

constexpr std::array keys{
    SettingKey{"photoDuration", "a number of seconds above 0", "seconds each photo is on screen",
               [](Document::AppSettings& settings, std::string_view text) {
                   return put(settings.photoDuration, Document::SettingValue::positiveNumber(text));
               },
               [](const Document::AppSettings& settings) -> std::optional<std::string> {
                   return Document::SettingValue::text(settings.photoDuration);
               },
               writeValue<&Document::AppSettings::photoDuration>},
    booleanKey<&Document::AppSettings::kenBurnsEnabled>("kenBurnsEnabled", "slow pan and zoom on photos"),
    choiceKey<&Document::AppSettings::chapterStyle, ProjectModel::chapterStyleFromRawValue>(
        "chapterStyle", "card or overlay", "how a new place is announced"),
    booleanKey<&Document::AppSettings::captionsEnabled>("captionsEnabled", "show captions in the video"),
    booleanKey<&Document::AppSettings::aiCaptionsEnabled>("aiCaptionsEnabled", "allow generated captions"),
    choiceKey<&Document::AppSettings::exportResolution, Export::exportResolutionFromRawValue>(
        "exportResolution", "p1080 or p2160", "size of exported movies"),
    choiceKey<&Document::AppSettings::exportCodec, Export::exportCodecFromRawValue>(
        "exportCodec", "h264 or hevc", "video format of exported movies"),
    choiceKey<&Document::AppSettings::defaultAIProvider, ProjectModel::aiProviderFromRawValue>(
        "defaultAIProvider", "apple, ollama or openRouter", "who writes generated captions"),
    SettingKey{"ollamaBaseURL", "an http or https address", "address of the Ollama server",
               [](Document::AppSettings& settings, std::string_view text) {
                   return put(settings.ollamaBaseURL, Document::SettingValue::webAddress(text));
               },
               plainText<&Document::AppSettings::ollamaBaseURL>,
               writeValue<&Document::AppSettings::ollamaBaseURL>},
    nameKey<&Document::AppSettings::ollamaModel>("ollamaModel", "model of the Ollama server"),
    nameKey<&Document::AppSettings::openRouterModel>("openRouterModel", "model at OpenRouter"),
    SettingKey{"captionPrompt", "any text", "guidance for generated captions",
               [](Document::AppSettings& settings, std::string_view text) {
                   if (!Foundation::isValidUtf8(text))
                       return false;
                   settings.captionPrompt = std::string{text};
                   return true;
               },
               plainText<&Document::AppSettings::captionPrompt>,
               writeOptional<&Document::AppSettings::captionPrompt>},
    SettingKey{"geocoderURL", "an http or https address", "a server that names places",
               [](Document::AppSettings& settings, std::string_view text) {
                   return put(settings.geocoderURL, Document::SettingValue::webAddress(text));
               },
               plainText<&Document::AppSettings::geocoderURL>,
               writeOptional<&Document::AppSettings::geocoderURL>},
};

constexpr std::string_view legacyOpenRouterKeyName = "openRouterKey";

QString qString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// What the file holds under a key. A text with commas that someone typed into the file without quotes comes
/// as a list and is put together again.
std::optional<std::string> storedText(const QSettings& file, std::string_view key) {
    const QVariant value = file.value(qString(key));
    if (!value.isValid())
        return std::nullopt;
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList().join(", ").toStdString();
    return value.toString().toStdString();
}

/// Held while a process changes the settings, so that no other changes them between its reading and its
/// writing. The folder itself is locked: no file is left behind.
class FolderLock {
public:
    explicit FolderLock(const std::filesystem::path& folder)
        : m_descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        // Where the file system has no locks, the settings file's own write protection has to do.
        while (m_descriptor >= 0 && ::flock(m_descriptor, LOCK_EX) != 0 && errno == EINTR) {
        }
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock() {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }

private:
    int m_descriptor;
};

[[noreturn]] void failToWrite(const std::filesystem::path& path, const std::string& reason) {
    throw SettingsStoreError("The settings file " + path.string() + " can’t be written: " + reason + ".");
}

/// Makes sure that the file exists and that only its owner may read it: an address in it may carry a
/// password.
void makePrivateFile(const std::filesystem::path& path) {
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0)
        failToWrite(path, std::strerror(errno));
    struct stat status {};
    if (::fstat(descriptor, &status) == 0 && (status.st_mode & 077) != 0)
        ::fchmod(descriptor, status.st_mode & 0700);
    ::close(descriptor);
}

} // namespace

std::span<const SettingKey> settingKeys() {
    return keys;
}

const SettingKey* findSettingKey(std::string_view name) {
    const auto found =
        std::find_if(keys.begin(), keys.end(), [&](const SettingKey& key) { return key.name == name; });
    return found == keys.end() ? nullptr : &*found;
}

std::filesystem::path SettingsStore::defaultPath() {
    return UserFolders::settings() / "settings.ini";
}

SettingsStore::SettingsStore(std::filesystem::path path)
    : m_path(std::move(path)) {}

Document::AppSettings SettingsStore::load() const {
    Document::AppSettings settings;
    const QSettings file{qString(m_path.string()), QSettings::IniFormat};
    for (const SettingKey& key : keys) {
        if (const std::optional<std::string> text = storedText(file, key.name))
            key.assign(settings, *text);
    }
    return settings;
}

bool SettingsStore::set(const SettingKey& key, std::string_view text) {
    Document::AppSettings parsed;
    if (!key.assign(parsed, text))
        return false;
    change(key.name, key.text(parsed));
    return true;
}

void SettingsStore::unset(const SettingKey& key) {
    if (std::filesystem::exists(m_path))
        change(key.name, std::nullopt);
}

std::optional<std::string> SettingsStore::legacyOpenRouterKey() const {
    return storedText(QSettings{qString(m_path.string()), QSettings::IniFormat}, legacyOpenRouterKeyName);
}

void SettingsStore::removeLegacyOpenRouterKey() {
    change(legacyOpenRouterKeyName, std::nullopt);
}

void SettingsStore::change(std::string_view key, const std::optional<std::string>& text) {
    std::error_code error;
    const std::filesystem::path folder = m_path.parent_path();
    if (!std::filesystem::exists(folder, error)) {
        std::filesystem::create_directories(folder.parent_path(), error);
        if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
            failToWrite(m_path, std::strerror(errno));
    }
    const FolderLock lock{folder};
    makePrivateFile(m_path);
    QSettings file{qString(m_path.string()), QSettings::IniFormat};
    if (text)
        file.setValue(qString(key), qString(*text));
    else
        file.remove(qString(key));
    file.sync();
    if (file.status() == QSettings::FormatError)
        failToWrite(m_path, "it is not in the form of a settings file");
    if (file.status() != QSettings::NoError)
        failToWrite(m_path, "access was refused or the disk is full");
}

} // namespace Platform
