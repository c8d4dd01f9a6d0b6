// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <future>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace Slides {

/// Keeps the most recently used results of an expensive computation. Threads that ask for the same key at the
/// same time share one computation. Keys need equality only: the cache is meant for a handful of entries.
/// Thread-safe.
template <class Key, class Value>
class OnceCache {
public:
    /// At most `limit` finished results are kept; with 0, a result lives as long as its users hold it.
    explicit OnceCache(std::size_t limit)
        : m_limit(limit) {}

    /// The kept result, or that of `make()`, which returns a shared pointer. An absent result and an
    /// exception reach everybody who waits for them and are not kept.
    template <class Make>
    std::shared_ptr<const Value> get(const Key& key, Make make) {
        std::promise<std::shared_ptr<const Value>> promise;
        if (auto result = join(key, promise); result.valid())
            return result.get();
        try {
            std::shared_ptr<const Value> value = make();
            finish(key, value != nullptr);
            promise.set_value(value);
            return value;
        } catch (...) {
            finish(key, false);
            promise.set_exception(std::current_exception());
            throw;
        }
    }

private:
    struct Entry {
        Key key;
        std::shared_future<std::shared_ptr<const Value>> result;
        bool isFinished = false;
    };

    /// The result that is there or on its way, now the most recently used; or, having entered the promise as
    /// the one to wait for, an invalid future.
    std::shared_future<std::shared_ptr<const Value>>
    join(const Key& key, std::promise<std::shared_ptr<const Value>>& promise) {
        const std::scoped_lock lock(m_mutex);
        for (std::size_t i = 0; i < m_entries.size(); ++i) {
            if (m_entries[i].key == key)
                return moveToBack(i).result;
        }
        m_entries.push_back({key, promise.get_future().share()});
        return {};
    }

    void finish(const Key& key, bool keep) {
        const std::scoped_lock lock(m_mutex);
        std::size_t finished = 0;
        for (std::size_t i = 0; i < m_entries.size(); ++i) {
            if (m_entries[i].key == key) {
                if (keep)
                    moveToBack(i).isFinished = true;
                else
                    erase(i);
                break;
            }
        }
        for (const Entry& entry : m_entries)
            finished += entry.isFinished ? 1 : 0;
        for (std::size_t i = 0; finished > m_limit; ++i) {
            if (m_entries[i].isFinished) {
                erase(i--);
                --finished;
            }
        }
    }

    Entry& moveToBack(std::size_t index) {
        Entry entry = std::move(m_entries[index]);
        erase(index);
        return m_entries.emplace_back(std::move(entry));
    }

    void erase(std::size_t index) { m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(index)); }

    const std::size_t m_limit;
    std::mutex m_mutex;
    /// Least recently used first; also holds what is still being made, which does not count.
    std::vector<Entry> m_entries;
};

} // namespace Slides
