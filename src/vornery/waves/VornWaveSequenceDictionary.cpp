// Sequences: their stored form.
#include <array>
#include <cmath>
#include <limits>
#include <optional>

#include "VornWave2.h"
#include "VornWaveSequence.h"

namespace {

using Value = PropertyListValue;

struct Field {
    const char* key;
    std::uint32_t StreamDescription::*member;
};
constexpr std::array kFields{
    Field{"format", &StreamDescription::mFormatID},
    Field{"flags", &StreamDescription::mFormatFlags},
    Field{"bytesPerPacket", &StreamDescription::mBytesPerPacket},
    Field{"framesPerPacket", &StreamDescription::mFramesPerPacket},
    Field{"bytesPerFrame", &StreamDescription::mBytesPerFrame},
    Field{"channels", &StreamDescription::mChannelsPerFrame},
    Field{"bits", &StreamDescription::mBitsPerChannel},
};

Value dictionaryOf(const StreamDescription& description) {
    Value::Dictionary dictionary{{"sampleRate", description.mSampleRate}};
    for (const Field& field : kFields)
        dictionary.emplace(field.key, description.*field.member);
    return dictionary;
}

const Value* valueAt(const Value::Dictionary& dictionary, const char* key) {
    const auto found = dictionary.find(key);
    return found == dictionary.end() ? nullptr : &found->second;
}

std::optional<std::uint32_t> unsignedOf(const Value* value) {
    const std::int64_t* number = value ? value->integer() : nullptr;
    if (!number || *number < 0 || *number > std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    return static_cast<std::uint32_t>(*number);
}

std::optional<double> rateOf(const Value* value) {
    if (const auto whole = unsignedOf(value))
        return *whole;
    const double* rate = value ? value->real() : nullptr;
    return rate && std::isfinite(*rate) && *rate >= 0 ? std::optional(*rate) : std::nullopt;
}

std::optional<StreamDescription> descriptionOf(const Value* value) {
    const Value::Dictionary* dictionary = value ? value->dictionary() : nullptr;
    const auto rate = dictionary ? rateOf(valueAt(*dictionary, "sampleRate")) : std::nullopt;
    if (!rate)
        return std::nullopt;
    StreamDescription description;
    description.mSampleRate = *rate;
    for (const Field& field : kFields) {
        const auto number = unsignedOf(valueAt(*dictionary, field.key));
        if (!number)
            return std::nullopt;
        description.*field.member = *number;
    }
    return description.mChannelsPerFrame <= 2 ? std::optional(description) : std::nullopt;
}

Value entryOf(const VornWaveBlock& block, LookupTable& wavetable) {
    const std::int64_t reference =
        block.hasWave() ? std::int64_t{wavetable.referenceItem(block.waveOrNil().get())}
                        : -std::int64_t{block.audioDescription()->mChannelsPerFrame};
    Value::Array entry{reference, block.startIndex(), block.frameCount()};
    if (reference < 0 && !block.silenceFolder().empty())
        entry.push_back(block.silenceFolder());
    return entry;
}

std::shared_ptr<VornWaveBlock> silenceOf(const Value::Array& entry, std::int64_t channels,
                                         std::uint32_t count) {
    static const std::string none;
    const std::string* folder = entry.size() == 4 ? entry[3].string() : &none;
    if (channels > 2 || !folder)
        return nullptr;
    return VornWaveBlock::blockOfSilenceLength(count, static_cast<std::uint32_t>(channels),
                                               *folder);
}

/// Null for what is no entry.
std::shared_ptr<VornWaveBlock> blockOf(const Value& value,
                                       const std::vector<std::shared_ptr<VornWave2>>& wavetable) {
    const Value::Array* entry = value.array();
    if (!entry || entry->size() < 3 || entry->size() > 4)
        return nullptr;
    const std::int64_t* reference = (*entry)[0].integer();
    const auto start = unsignedOf(&(*entry)[1]), count = unsignedOf(&(*entry)[2]);
    if (!reference || !start || !count)
        return nullptr;
    if (*reference < 0)
        return *reference < -2 ? nullptr : silenceOf(*entry, -*reference, *count);
    const auto index = static_cast<std::uint64_t>(*reference);
    if (index >= wavetable.size() || !wavetable[index])
        return nullptr;
    return VornWaveBlock::blockWithWave(wavetable[index], *start, *count);
}

}  // namespace

PropertyListValue VornWaveSequence::dictionaryRepresentationUsingWavetable(
    LookupTable& wavetable) const {
    Value::Array list;
    list.reserve(m_blocks.size());
    for (const auto& block : m_blocks)
        list.push_back(entryOf(*block, wavetable));
    return Value::Dictionary{{"description", dictionaryOf(m_myAudioDescription)},
                             {"list", std::move(list)},
                             {"xType", static_cast<std::int32_t>(m_extractType)}};
}

VornWaveSequence::Pointer VornWaveSequence::sequenceFromDictionary(
    const PropertyListValue& dictionary, const std::vector<std::shared_ptr<VornWave2>>& wavetable) {
    const Value::Dictionary* top = dictionary.dictionary();
    if (!top)
        return nullptr;
    const auto description = descriptionOf(valueAt(*top, "description"));
    const Value* list = valueAt(*top, "list");
    const auto type = unsignedOf(valueAt(*top, "xType"));
    if (!description || !list || !list->array() || !type || *type > 2)
        return nullptr;
    Blocks blocks;
    for (const Value& entry : *list->array()) {
        blocks.push_back(blockOf(entry, wavetable));
        if (!blocks.back())
            return nullptr;
    }
    return sequenceWithBlocks(std::move(blocks), *description,
                              static_cast<ExtractType>(static_cast<std::int32_t>(*type)));
}
