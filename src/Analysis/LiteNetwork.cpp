#include <Analysis/LiteNetwork.h>
#include <Analysis/NetworkFile.h>

#include <tensorflow/lite/c/c_api.h>

#include <cstring>
#include <mutex>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace Analysis {

namespace {

using Model = std::unique_ptr<TfLiteModel, decltype(&TfLiteModelDelete)>;
using Interpreter = std::unique_ptr<TfLiteInterpreter, decltype(&TfLiteInterpreterDelete)>;
using Options = std::unique_ptr<TfLiteInterpreterOptions, decltype(&TfLiteInterpreterOptionsDelete)>;

/// What the format writes into every file; the library complains loudly about others.
bool isLiteModel(std::span<const std::byte> bytes) {
    constexpr std::string_view identifier = "TFL3";
    constexpr std::size_t position = 4;
    return bytes.size() > position + identifier.size() &&
           std::memcmp(bytes.data() + position, identifier.data(), identifier.size()) == 0;
}

bool holds(const TfLiteTensor* tensor, std::size_t count) {
    return tensor && TfLiteTensorType(tensor) == kTfLiteFloat32 &&
           TfLiteTensorByteSize(tensor) == count * sizeof(float);
}

} // namespace

struct LiteNetwork::Runtime {
    // The model stays in these bytes.
    NetworkFile file;
    std::vector<std::size_t> outputLengths;
    std::size_t inputLength = 0;
    Model model;
    // An interpreter serves one thread at a time; as many are made as run at once.
    std::mutex mutex;
    std::vector<Interpreter> idle;

    Runtime(const std::filesystem::path& path, std::size_t input, std::vector<std::size_t> outputs)
        : file(path)
        , outputLengths(std::move(outputs))
        , inputLength(input)
        , model(isLiteModel(file.bytes()) ? TfLiteModelCreate(file.bytes().data(), file.bytes().size())
                                          : nullptr,
                TfLiteModelDelete) {}

    /// Null when the model is none, or not the expected one.
    [[nodiscard]] Interpreter newInterpreter() const {
        Interpreter interpreter(nullptr, TfLiteInterpreterDelete);
        if (!model)
            return interpreter;
        const Options options(TfLiteInterpreterOptionsCreate(), TfLiteInterpreterOptionsDelete);
        TfLiteInterpreterOptionsSetNumThreads(options.get(), 1);
        // What fails is said by the caller.
        TfLiteInterpreterOptionsSetErrorReporter(
            options.get(), [](void*, const char*, va_list) {}, nullptr);
        interpreter.reset(TfLiteInterpreterCreate(model.get(), options.get()));
        if (!interpreter)
            return interpreter;
        bool fits = TfLiteInterpreterAllocateTensors(interpreter.get()) == kTfLiteOk &&
                    TfLiteInterpreterGetInputTensorCount(interpreter.get()) == 1 &&
                    TfLiteInterpreterGetOutputTensorCount(interpreter.get()) >=
                        static_cast<int>(outputLengths.size()) &&
                    holds(TfLiteInterpreterGetInputTensor(interpreter.get(), 0), inputLength);
        for (std::size_t i = 0; fits && i < outputLengths.size(); ++i)
            fits = holds(TfLiteInterpreterGetOutputTensor(interpreter.get(), static_cast<int>(i)),
                         outputLengths[i]);
        if (!fits)
            interpreter.reset();
        return interpreter;
    }
};

LiteNetwork::LiteNetwork(const std::filesystem::path& file, std::size_t inputLength,
                         std::vector<std::size_t> outputLengths)
    : m_runtime(std::make_unique<Runtime>(file, inputLength, std::move(outputLengths))) {
    Interpreter first = m_runtime->newInterpreter();
    if (!first)
        throw NetworkFileError::damaged(file);
    m_runtime->idle.push_back(std::move(first));
}

LiteNetwork::~LiteNetwork() = default;

std::vector<std::vector<float>> LiteNetwork::run(std::span<const float> input) const {
    Interpreter interpreter(nullptr, TfLiteInterpreterDelete);
    {
        const std::lock_guard lock(m_runtime->mutex);
        if (!m_runtime->idle.empty()) {
            interpreter = std::move(m_runtime->idle.back());
            m_runtime->idle.pop_back();
        }
    }
    if (!interpreter)
        interpreter = m_runtime->newInterpreter();
    if (!interpreter || input.size() != m_runtime->inputLength ||
        TfLiteTensorCopyFromBuffer(TfLiteInterpreterGetInputTensor(interpreter.get(), 0), input.data(),
                                   input.size_bytes()) != kTfLiteOk ||
        TfLiteInterpreterInvoke(interpreter.get()) != kTfLiteOk)
        throw std::runtime_error("A network could not be run");

    std::vector<std::vector<float>> outputs;
    for (std::size_t i = 0; i < m_runtime->outputLengths.size(); ++i) {
        std::vector<float>& output = outputs.emplace_back(m_runtime->outputLengths[i]);
        if (TfLiteTensorCopyToBuffer(TfLiteInterpreterGetOutputTensor(interpreter.get(), static_cast<int>(i)),
                                     output.data(), output.size() * sizeof(float)) != kTfLiteOk)
            throw std::runtime_error("A network could not be run");
    }
    const std::lock_guard lock(m_runtime->mutex);
    m_runtime->idle.push_back(std::move(interpreter));
    return outputs;
}

} // namespace Analysis
