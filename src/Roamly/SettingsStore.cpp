#include <Foundation/Bytes.h>
#include <Roamly/SettingValue.h>
#include <Roamly/SettingsStore.h>
#include <Roamly/UserFolders.h>

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

namespace Roamly {

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
bool assignBoolean(AppSettings& settings, std::string_view text) {
    return put(settings.*Member, SettingValue::boolean(text));
}

template <auto Member, auto Parse>
bool assignChoice(AppSettings& settings, std::string_view text) {
    return put(settings.*Member, Parse(text));
}

/// A name that a server will be asked for. An empty one is a value like any other, not the default.
template <auto Member>
bool assignName(AppSettings& settings, std::string_view text) {
    if (!Foundation::isValidUtf8(text))
        return false;
    settings.*Member = std::string{text};
    return true;
}

template <auto Member>
std::optional<std::string> booleanText(const AppSettings& settings) {
    return settings.*Member ? "true" : "false";
}

template <auto Member>
std::optional<std::string> choiceText(const AppSettings& settings) {
    return std::string{rawValue(settings.*Member)};
}

template <auto Member>
std::optional<std::string> plainText(const AppSettings& settings) {
    return settings.*Member;
}

template <auto Member>
void writeValue(JsonWriter& json, const AppSettings& settings) {
    json.value(settings.*Member);
}

template <auto Member>
void writeOptional(JsonWriter& json, const AppSettings& settings) {
    if (settings.*Member)
        json.value(*(settings.*Member));
    else
        json.null();
}

template <auto Member>
void writeChoice(JsonWriter& json, const AppSettings& settings) {
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
               [](AppSettings& settings, std::string_view text) {
                   return put(settings.photoDuration, SettingValue::positiveNumber(text));
               },
               [](const AppSettings& settings) -> std::optional<std::string> {
                   return SettingValue::text(settings.photoDuration);
               },
               writeValue<&AppSettings::photoDuration>},
    booleanKey<&AppSettings::kenBurnsEnabled>("kenBurnsEnabled", "slow pan and zoom on photos"),
    choiceKey<&AppSettings::chapterStyle, ProjectModel::chapterStyleFromRawValue>(
        "chapterStyle", "card or overlay", "how a new place is announced"),
    booleanKey<&AppSettings::captionsEnabled>("captionsEnabled", "show captions in the video"),
    booleanKey<&AppSettings::aiCaptionsEnabled>("aiCaptionsEnabled", "allow generated captions"),
    choiceKey<&AppSettings::exportResolution, Export::exportResolutionFromRawValue>(
        "exportResolution", "p1080 or p2160", "size of exported movies"),
    choiceKey<&AppSettings::exportCodec, Export::exportCodecFromRawValue>("exportCodec", "h264 or hevc",
                                                                          "video format of exported movies"),
    choiceKey<&AppSettings::defaultAIProvider, ProjectModel::aiProviderFromRawValue>(
        "defaultAIProvider", "apple, ollama or openRouter", "who writes generated captions"),
    SettingKey{"ollamaBaseURL", "an http or https address", "address of the Ollama server",
               [](AppSettings& settings, std::string_view text) {
                   return put(settings.ollamaBaseURL, SettingValue::webAddress(text));
               },
               plainText<&AppSettings::ollamaBaseURL>, writeValue<&AppSettings::ollamaBaseURL>},
    nameKey<&AppSettings::ollamaModel>("ollamaModel", "model of the Ollama server"),
    nameKey<&AppSettings::openRouterModel>("openRouterModel", "model at OpenRouter"),
    SettingKey{"captionPrompt", "any text", "guidance for generated captions",
               [](AppSettings& settings, std::string_view text) {
                   if (!Foundation::isValidUtf8(text))
                       return false;
                   settings.captionPrompt = std::string{text};
                   return true;
               },
               plainText<&AppSettings::captionPrompt>, writeOptional<&AppSettings::captionPrompt>},
    SettingKey{"geocoderURL", "an http or https address", "a server that names places",
               [](AppSettings& settings, std::string_view text) {
                   return put(settings.geocoderURL, SettingValue::webAddress(text));
               },
               plainText<&AppSettings::geocoderURL>, writeOptional<&AppSettings::geocoderURL>},
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

AppSettings SettingsStore::load() const {
    AppSettings settings;
    const QSettings file{qString(m_path.string()), QSettings::IniFormat};
    for (const SettingKey& key : keys) {
        if (const std::optional<std::string> text = storedText(file, key.name))
            key.assign(settings, *text);
    }
    return settings;
}

bool SettingsStore::set(const SettingKey& key, std::string_view text) {
    AppSettings parsed;
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

} // namespace Roamly
