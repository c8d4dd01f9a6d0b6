#pragma once

namespace PhotoSources {

/// While one of these lives, what libjxl and libde265 print about broken files does not reach standard error,
/// which they cannot be told; all other lines do, late at worst. Affects the whole process; any number of
/// threads may hold one.
class StandardErrorFilter {
public:
    StandardErrorFilter();
    StandardErrorFilter(const StandardErrorFilter&) = delete;
    StandardErrorFilter& operator=(const StandardErrorFilter&) = delete;
    ~StandardErrorFilter();
};

} // namespace PhotoSources
