#pragma once

#include <string_view>

namespace PhotoSources {

/// While one of these lives, lines that begin with the prefix do not reach standard error; all others do,
/// late at worst. For a library that reports every broken file there and cannot be told not to. Affects the
/// whole process, from any number of threads, which must all ask for the same prefix.
class StandardErrorFilter {
public:
    explicit StandardErrorFilter(std::string_view prefix);
    StandardErrorFilter(const StandardErrorFilter&) = delete;
    StandardErrorFilter& operator=(const StandardErrorFilter&) = delete;
    ~StandardErrorFilter();

private:
    std::string_view m_prefix;
};

} // namespace PhotoSources
