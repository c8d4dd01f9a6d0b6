// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/ImageNetwork.h>
#include <Analysis/NetworkFile.h>

#include <onnxruntime_c_api.h>

#include <array>
#include <cstdint>
#include <stdexcept>
#include <utility>

namespace Analysis {

namespace {

// Nothing newer is used, so that the runtimes of distributions serve as well.
constexpr std::uint32_t runtimeVersion = 21;

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

/// How many numbers one picture has in an input or output of single precision, -1 where the network leaves it
/// open; 0 when it holds something else.
std::int64_t lengthOf(OrtTypeInfo* type) {
    const Owned<OrtTypeInfo> owner{type, runtime().ReleaseTypeInfo};
    const OrtTensorTypeAndShapeInfo* tensor = nullptr;
    check(runtime().CastTypeInfoToTensorInfo(type, &tensor));
    if (!tensor)
        return 0;
    ONNXTensorElementDataType element = ONNX_TENSOR_ELEMENT_DATA_TYPE_UNDEFINED;
    check(runtime().GetTensorElementType(tensor, &element));
    std::size_t dimensions = 0;
    check(runtime().GetDimensionsCount(tensor, &dimensions));
    if (element != ONNX_TENSOR_ELEMENT_DATA_TYPE_FLOAT || dimensions < 2)
        return 0;
    std::vector<std::int64_t> shape(dimensions);
    check(runtime().GetDimensions(tensor, shape.data(), dimensions));
    std::int64_t length = 1;
    for (std::size_t i = 1; i < dimensions; ++i) {
        if (shape[i] < 0)
            return -1;
        length *= shape[i];
    }
    return length;
}

/// The lengths of the network's outputs by their names.
std::vector<std::pair<std::string, std::int64_t>> outputsOf(const OrtSession* session) {
    OrtAllocator* allocator = nullptr;
    check(runtime().GetAllocatorWithDefaultOptions(&allocator));
    std::size_t count = 0;
    check(runtime().SessionGetOutputCount(session, &count));
    std::vector<std::pair<std::string, std::int64_t>> outputs;
    for (std::size_t i = 0; i < count; ++i) {
        char* name = nullptr;
        check(runtime().SessionGetOutputName(session, i, allocator, &name));
        std::string copy = name;
        check(runtime().AllocatorFree(allocator, name));
        OrtTypeInfo* type = nullptr;
        check(runtime().SessionGetOutputTypeInfo(session, i, &type));
        outputs.emplace_back(std::move(copy), lengthOf(type));
    }
    return outputs;
}

} // namespace

struct ImageNetwork::Session {
    std::int64_t side;
    std::vector<Output> outputs;
    Owned<OrtEnv> environment;
    Owned<OrtMemoryInfo> memory;
    Owned<OrtSession> session;

    Session(std::span<const std::byte> network, int pictureSide, std::vector<Output> wanted)
        : side(pictureSide)
        , outputs(std::move(wanted))
        , environment(owned<OrtEnv>(
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
        if (!fits())
            throw std::runtime_error("The network is not the one expected");
    }

    [[nodiscard]] bool fits() {
        std::size_t inputs = 0;
        check(runtime().SessionGetInputCount(session.get(), &inputs));
        if (inputs != 1)
            return false;
        OrtTypeInfo* type = nullptr;
        check(runtime().SessionGetInputTypeInfo(session.get(), 0, &type));
        if (lengthOf(type) != 3 * side * side)
            return false;
        const auto offered = outputsOf(session.get());
        for (Output& output : outputs) {
            bool isThere = false;
            for (const auto& [name, length] : offered) {
                if (name != output.name || length < 1 ||
                    (output.length != 0 && length != static_cast<std::int64_t>(output.length)))
                    continue;
                output.length = static_cast<std::size_t>(length);
                isThere = true;
            }
            if (!isThere)
                return false;
        }
        return true;
    }
};

ImageNetwork::ImageNetwork(const std::filesystem::path& file, int side, std::vector<Output> outputs) {
    const NetworkFile network(file);
    try {
        m_session = std::make_unique<Session>(network.bytes(), side, std::move(outputs));
    } catch (const std::runtime_error&) {
        // Intact, yet nothing this runtime can use.
        throw NetworkFileError::damaged(file);
    }
}

ImageNetwork::~ImageNetwork() = default;

std::vector<std::vector<float>> ImageNetwork::run(std::span<const float> planes) const {
    const std::array<std::int64_t, 4> shape{1, 3, m_session->side, m_session->side};
    const auto input = owned<OrtValue>(runtime().ReleaseValue, [&](OrtValue** made) {
        // The runtime only reads it.
        return runtime().CreateTensorWithDataAsOrtValue(
            m_session->memory.get(), const_cast<float*>(planes.data()), planes.size_bytes(), shape.data(),
            shape.size(), ONNX_TENSOR_ELEMENT_DATA_TYPE_FLOAT, made);
    });
    constexpr std::array inputNames{"image"};
    const std::array<const OrtValue*, 1> inputs{input.get()};
    std::vector<const char*> names;
    for (const Output& output : m_session->outputs)
        names.push_back(output.name.c_str());
    std::vector<OrtValue*> answers(names.size());
    check(runtime().Run(m_session->session.get(), nullptr, inputNames.data(), inputs.data(), inputs.size(),
                        names.data(), names.size(), answers.data()));
    std::vector<Owned<OrtValue>> owners;
    owners.reserve(answers.size());
    for (OrtValue* answer : answers)
        owners.emplace_back(answer, runtime().ReleaseValue);

    std::vector<std::vector<float>> lists;
    for (std::size_t i = 0; i < answers.size(); ++i) {
        void* data = nullptr;
        check(runtime().GetTensorMutableData(answers[i], &data));
        const auto* first = static_cast<const float*>(data);
        lists.emplace_back(first, first + m_session->outputs[i].length);
    }
    return lists;
}

} // namespace Analysis
