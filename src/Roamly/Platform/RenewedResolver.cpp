// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/RenewedResolver.h>

#include <utility>

namespace Platform {

RenewedResolver::RenewedResolver(std::chrono::seconds lifetime, Clock now)
    : m_lifetime(lifetime)
    , m_now(std::move(now)) {}

std::optional<std::filesystem::path> RenewedResolver::resolvedFile(const Foundation::Bytes& bookmark) {
    std::shared_ptr<Foundation::BookmarkResolver> resolver;
    {
        const std::scoped_lock lock{m_mutex};
        const auto now = m_now();
        if (!m_resolver || now - m_made >= m_lifetime) {
            m_resolver = std::make_shared<Foundation::BookmarkResolver>();
            m_made = now;
        }
        resolver = m_resolver;
    }
    return resolver->resolvedFile(bookmark);
}

} // namespace Platform
