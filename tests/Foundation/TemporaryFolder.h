#pragma once

#include <Support/TemporaryFolder.h>

namespace Foundation::Testing {

using ::TemporaryFolder;

} // namespace Foundation::Testing
