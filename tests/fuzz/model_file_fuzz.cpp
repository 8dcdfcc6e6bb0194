// libFuzzer target of the model file's reader and writer.

#include "model/model_file.h"

#include <cstdlib>

namespace {

using namespace facetor;

void require(bool holds)
{
    if (!holds) std::abort(); // what the fuzzer reports as a finding
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Model model;
    static const bool created = createModelStore(model) == Message::none;
    require(created);
    const auto file = std::as_bytes(std::span(data, size));

    // The model that the file before left behind is the one that this file is read into: a failed
    // read leaves parts of it.
    const bool read = readModel(model, file) == Message::none;
    require(isSafeToDraw(model));
    const Bytes written = writeModel(model);
    if (!read) return 0;

    // What was read is written so that it reads back, and settles: angles drift toward zero, so the
    // third file is the first that has to be the same but for them.
    require(readModel(model, written) == Message::none);
    require(isSafeToDraw(model));
    Bytes again = writeModel(model);
    require(again.size() == written.size());
    for (std::uint32_t i = 0; i < model.objectCount; ++i) model.objects[i].rotation = {};
    const Bytes still = writeModel(model);
    require(readModel(model, still) == Message::none);
    require(writeModel(model) == still);
    return 0;
}
