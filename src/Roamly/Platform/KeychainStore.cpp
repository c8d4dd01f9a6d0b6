// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/KeychainStore.h>

#include <libsecret/secret.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>

namespace Platform::KeychainStore {

namespace {

constexpr const char* service = "app.roamly.Roamly";
constexpr const char* account = "openrouter";
constexpr const char* label = "Roamly: OpenRouter API key";

/// Long enough to type a keyring's password, short enough not to hang a script for good.
constexpr std::chrono::seconds patience{120};

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};
struct FreePassword {
    void operator()(gchar* password) const { secret_password_free(password); }
};

const SecretSchema& schema() {
    static const SecretSchema schema{service,
                                     SECRET_SCHEMA_NONE,
                                     {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                      {"account", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                      {nullptr, {}}},
                                     0,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     nullptr};
    return schema;
}

/// Cancels a call that takes longer than we have patience for.
class Deadline {
public:
    Deadline()
        : m_cancellable(g_cancellable_new())
        , m_watch([this](const std::stop_token& stop) {
            std::unique_lock lock{m_mutex};
            if (!m_ended.wait_for(lock, stop, patience, [&stop] { return stop.stop_requested(); }))
                g_cancellable_cancel(m_cancellable.get());
        }) {}
    ~Deadline() {
        m_watch.request_stop();
        m_watch.join();
    }
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;

    [[nodiscard]] GCancellable* get() const { return m_cancellable.get(); }

private:
    std::unique_ptr<GCancellable, Unref> m_cancellable;
    std::mutex m_mutex;
    std::condition_variable_any m_ended;
    std::jthread m_watch;
};

bool succeeded(gboolean result, GError* error) {
    if (error != nullptr)
        g_error_free(error);
    return result != FALSE && error == nullptr;
}

} // namespace

bool isAvailable() {
    const Deadline deadline;
    GError* error = nullptr;
    SecretService* found = secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, deadline.get(), &error);
    if (found != nullptr)
        g_object_unref(found);
    return succeeded(found != nullptr, error);
}

std::optional<std::string> read() {
    const Deadline deadline;
    GError* error = nullptr;
    const std::unique_ptr<gchar, FreePassword> key{secret_password_lookup_sync(
        &schema(), deadline.get(), &error, "service", service, "account", account, nullptr)};
    if (!succeeded(key != nullptr, error))
        return std::nullopt;
    return std::string{key.get()};
}

bool remove() {
    const Deadline deadline;
    GError* error = nullptr;
    // False without an error only says that there was nothing to remove.
    secret_password_clear_sync(&schema(), deadline.get(), &error, "service", service, "account", account,
                               nullptr);
    return succeeded(TRUE, error);
}

bool save(const std::string& key) {
    if (key.empty())
        return remove();
    const Deadline deadline;
    GError* error = nullptr;
    const gboolean stored =
        secret_password_store_sync(&schema(), SECRET_COLLECTION_DEFAULT, label, key.c_str(), deadline.get(),
                                   &error, "service", service, "account", account, nullptr);
    return succeeded(stored, error);
}

std::optional<std::string> load(const LegacyKey& legacy) {
    if (std::optional<std::string> key = read(); key && !key->empty())
        return key;
    if (std::optional<std::string> key = legacy.read(); key && !key->empty()) {
        // Without a Secret Service the old entry is all there is.
        if (save(*key))
            legacy.remove();
        return key;
    }
    return std::nullopt;
}

} // namespace Platform::KeychainStore
