#include <Analysis/ImageScaling.h>
#include <Analysis/NetworkFile.h>
#include <Analysis/VisionNetwork.h>

#include <onnxruntime_c_api.h>

#include <array>
#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>

namespace Analysis {

namespace {

// Nothing newer is used, so that the runtimes of distributions serve as well.
constexpr std::uint32_t runtimeVersion = 21;

constexpr int side = 224;
constexpr std::size_t embeddingLength = 2048;
constexpr std::size_t classCount = 1000;

const OrtApi& runtime() {
    static const OrtApi* const api = OrtGetApiBase()->GetApi(runtimeVersion);
    if (!api)
        throw std::runtime_error("The installed ONNX Runtime is too old");
    return *api;
}

void check(OrtStatus* status) {
    if (!status)
        return;
    const std::string message = runtime().GetErrorMessage(status);
    runtime().ReleaseStatus(status);
    throw std::runtime_error("ONNX Runtime: " + message);
}

template <typename Object>
using Owned = std::unique_ptr<Object, void(ORT_API_CALL*)(Object*)>;

/// Owns what `make(Object**)` made.
template <typename Object, typename Make>
Owned<Object> owned(void(ORT_API_CALL* release)(Object*), Make make) {
    Object* object = nullptr;
    check(make(&object));
    return {object, release};
}

std::vector<float> values(OrtValue* tensor, std::size_t count) {
    void* data = nullptr;
    check(runtime().GetTensorMutableData(tensor, &data));
    const auto* first = static_cast<const float*>(data);
    return {first, first + count};
}

/// Whether one of the session's inputs or outputs holds as many numbers for each image as it should.
bool hasLength(OrtTypeInfo* type, std::size_t expected) {
    const Owned<OrtTypeInfo> owner{type, runtime().ReleaseTypeInfo};
    const OrtTensorTypeAndShapeInfo* tensor = nullptr;
    check(runtime().CastTypeInfoToTensorInfo(type, &tensor));
    if (!tensor)
        return false;
    ONNXTensorElementDataType element = ONNX_TENSOR_ELEMENT_DATA_TYPE_UNDEFINED;
    check(runtime().GetTensorElementType(tensor, &element));
    std::size_t dimensions = 0;
    check(runtime().GetDimensionsCount(tensor, &dimensions));
    std::vector<std::int64_t> shape(dimensions);
    check(runtime().GetDimensions(tensor, shape.data(), dimensions));
    std::int64_t length = 1;
    for (std::size_t i = 1; i < dimensions; ++i)
        length *= shape[i];
    return element == ONNX_TENSOR_ELEMENT_DATA_TYPE_FLOAT && dimensions >= 2 &&
           length == static_cast<std::int64_t>(expected);
}

} // namespace

struct VisionNetwork::Session {
    Owned<OrtEnv> environment;
    Owned<OrtMemoryInfo> memory;
    Owned<OrtSession> session;

    explicit Session(std::span<const std::byte> network)
        : environment(owned<OrtEnv>(
              runtime().ReleaseEnv,
              [](OrtEnv** made) { return runtime().CreateEnv(ORT_LOGGING_LEVEL_FATAL, "roamly", made); }))
        , memory(owned<OrtMemoryInfo>(runtime().ReleaseMemoryInfo,
                                      [](OrtMemoryInfo** made) {
                                          return runtime().CreateCpuMemoryInfo(OrtArenaAllocator,
                                                                               OrtMemTypeDefault, made);
                                      }))
        , session(nullptr, runtime().ReleaseSession) {
        const auto options =
            owned<OrtSessionOptions>(runtime().ReleaseSessionOptions, [](OrtSessionOptions** made) {
                return runtime().CreateSessionOptions(made);
            });
        // Photos are looked at side by side, so each needs but one thread, and sums keep their order.
        check(runtime().SetIntraOpNumThreads(options.get(), 1));
        check(runtime().SetInterOpNumThreads(options.get(), 1));
        session = owned<OrtSession>(runtime().ReleaseSession, [&](OrtSession** made) {
            return runtime().CreateSessionFromArray(environment.get(), network.data(), network.size(),
                                                    options.get(), made);
        });
        std::size_t inputs = 0;
        std::size_t outputs = 0;
        check(runtime().SessionGetInputCount(session.get(), &inputs));
        check(runtime().SessionGetOutputCount(session.get(), &outputs));
        bool fits = inputs == 1 && outputs == 2;
        if (fits) {
            OrtTypeInfo* type = nullptr;
            check(runtime().SessionGetInputTypeInfo(session.get(), 0, &type));
            fits = hasLength(type, std::size_t{3} * side * side);
            check(runtime().SessionGetOutputTypeInfo(session.get(), 0, &type));
            fits = hasLength(type, embeddingLength) && fits;
            check(runtime().SessionGetOutputTypeInfo(session.get(), 1, &type));
            fits = hasLength(type, classCount) && fits;
        }
        if (!fits)
            throw std::runtime_error("The network is not the one expected");
    }
};

VisionNetwork::VisionNetwork(const std::filesystem::path& file) {
    const NetworkFile network(file);
    try {
        m_session = std::make_unique<Session>(network.bytes());
    } catch (const std::runtime_error&) {
        // Intact, yet nothing this runtime can use.
        throw NetworkFileError::damaged(file);
    }
}

VisionNetwork::~VisionNetwork() = default;

VisionAnswer VisionNetwork::look(const Foundation::Image& image) const {
    if (image.isEmpty())
        throw std::runtime_error("There is nothing to see in an empty image");
    const FloatImage small = scaled(image, side, side);
    constexpr std::size_t pixels = static_cast<std::size_t>(side) * side;
    std::vector<float> planes(3 * pixels);
    for (std::size_t i = 0; i < pixels; ++i) {
        for (std::size_t channel = 0; channel < 3; ++channel)
            planes[channel * pixels + i] = small.values[3 * i + channel];
    }

    constexpr std::array<std::int64_t, 4> shape{1, 3, side, side};
    const auto input = owned<OrtValue>(runtime().ReleaseValue, [&](OrtValue** made) {
        return runtime().CreateTensorWithDataAsOrtValue(
            m_session->memory.get(), planes.data(), planes.size() * sizeof(float), shape.data(), shape.size(),
            ONNX_TENSOR_ELEMENT_DATA_TYPE_FLOAT, made);
    });
    constexpr std::array inputNames{"image"};
    constexpr std::array outputNames{"embedding", "prob"};
    const std::array<const OrtValue*, 1> inputs{input.get()};
    std::array<OrtValue*, 2> outputs{};
    check(runtime().Run(m_session->session.get(), nullptr, inputNames.data(), inputs.data(), inputs.size(),
                        outputNames.data(), outputNames.size(), outputs.data()));
    const Owned<OrtValue> embedding{outputs[0], runtime().ReleaseValue};
    const Owned<OrtValue> scores{outputs[1], runtime().ReleaseValue};
    return {values(embedding.get(), embeddingLength), values(scores.get(), classCount)};
}

} // namespace Analysis
