#include <Captioning/CaptionError.h>
#include <Captioning/FoundationModelsCaptioner.h>

namespace Captioning {

std::string FoundationModelsCaptioner::caption(const Foundation::Image& /*image*/, const SceneTags& /*tags*/,
                                               const std::stop_token& /*stop*/) const {
    throw CaptionError{BackendUnavailable{"Apple Intelligence is not available on this Mac."}};
}

} // namespace Captioning
