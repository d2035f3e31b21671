#include "device/log_sampler.h"

namespace zvsim {

std::vector<SampleSource> definitionEntries(const std::vector<std::uint8_t>& image)
{
    std::vector<SampleSource> entries;
    if (image.size() < 2)
        return entries;
    std::size_t count = image[0] | (image[1] << 8);
    for (std::size_t i = 0; i < count && 3 + 2 * i < image.size(); ++i)
        entries.push_back({ image[2 + 2 * i], image[3 + 2 * i] });
    return entries;
}

std::uint16_t sourceWord(const PackModel& model, const SampleSource& source)
{
    if (source.file == 0)
        return static_cast<std::uint16_t>(model.nowMs / 1000);
    const FileSpec* spec = model.map.file(source.file);
    if (!spec)
        return 0;
    int offset = source.element * spec->elementSize();
    const std::vector<std::uint8_t>& bytes = model.files.bytes(source.file);
    if (offset + 1 >= static_cast<int>(bytes.size()))
        return 0;
    return model.files.word(source.file, offset);
}

std::vector<std::uint8_t> composeLogSample(const PackModel& model)
{
    std::vector<std::uint8_t> sample(static_cast<std::size_t>(model.map.file(LogSampleFile)->size), 0);
    std::vector<SampleSource> entries = definitionEntries(model.files.bytes(LogDefinitionFile));
    for (std::size_t i = 0; i < entries.size() && 2 * i + 1 < sample.size(); ++i) {
        std::uint16_t word = sourceWord(model, entries[i]);
        sample[2 * i] = static_cast<std::uint8_t>(word & 0xFF);
        sample[2 * i + 1] = static_cast<std::uint8_t>(word >> 8);
    }
    return sample;
}

std::optional<std::uint16_t> sbdMapWord(const PackModel& model, std::uint8_t command)
{
    int begin = static_cast<int>(model.files.get("SBData Map Begin"));
    std::vector<SampleSource> entries = definitionEntries(model.files.bytes(SbdMapFile));
    int index = command - begin;
    if (index < 0 || index >= static_cast<int>(entries.size()))
        return std::nullopt;
    return sourceWord(model, entries[static_cast<std::size_t>(index)]);
}

} // namespace zvsim
