#include "editing/SoundEdits.h"

#include "VornWave2.h"
#include "editing/BlockList.h"
#include "editing/SoundCopy.h"

namespace {

using SoundEdits::Edited;

std::uint32_t channelsOf(const VornWaveSequence& sound) {
    return sound.audioDescription()->mChannelsPerFrame;
}

EditSpan before(const EditSpan& span) {
    return {0, span.from};
}

EditSpan behind(const EditSpan& span, const VornWaveSequence& sound) {
    return {span.to, sound.sampleCount()};
}

Edited soundOf(BlockList& list, const VornWaveSequence& like) {
    return {VornWaveSequence::sequenceWithBlocks(list.take(), *like.audioDescription(),
                                                 like.extractType())};
}

Edited refused(std::string why) {
    return {nullptr, std::move(why)};
}

Edited withInPlace(const VornWaveSequence& sound, const EditSpan& span,
                   std::shared_ptr<VornWaveBlock> block) {
    BlockList list;
    list.add(sound, before(span));
    list.add(std::move(block));
    list.add(sound, behind(span, sound));
    return soundOf(list, sound);
}

}  // namespace

std::string SoundEdits::emptyFault(const EditSpan& span) {
    return span.empty() ? "Nothing is selected: drag the handles at the wave's ends." : "";
}

Edited SoundEdits::crop(const VornWaveSequence& sound, const EditSpan& span) {
    if (span.empty())
        return refused(emptyFault(span));
    if (span == EditSpan::whole(sound.sampleCount()))
        return refused("Everything is selected, so there is nothing to crop away.");
    BlockList list;
    list.add(sound, span);
    return soundOf(list, sound);
}

Edited SoundEdits::cut(const VornWaveSequence& sound, const EditSpan& span) {
    if (span.empty())
        return refused(emptyFault(span));
    if (span == EditSpan::whole(sound.sampleCount()))
        return refused("The whole sound cannot be cut out: the instrument needs one.");
    BlockList list;
    list.add(sound, before(span));
    list.add(sound, behind(span, sound));
    return soundOf(list, sound);
}

Edited SoundEdits::silence(const VornWaveSequence& sound, const EditSpan& span) {
    if (span.empty())
        return refused(emptyFault(span));
    return withInPlace(sound, span,
                       VornWaveBlock::blockOfSilenceLength(span.frames(), channelsOf(sound), ""));
}

Edited SoundEdits::replace(const VornWaveSequence& sound, const EditSpan& span,
                           std::shared_ptr<VornWave2> wave) {
    return withInPlace(sound, span, VornWaveBlock::blockWithWave(std::move(wave)));
}

Edited SoundEdits::join(const VornWaveSequence& sound, const VornWaveSequence& other) {
    if (other.sampleCount() == 0)
        return refused("The sound to join is empty.");
    if (std::uint64_t{sound.sampleCount()} + other.sampleCount() > kMostFrames)
        return refused("Both sounds together would be too long.");
    const EditSpan all = EditSpan::whole(other.sampleCount());
    BlockList list;
    list.add(sound, EditSpan::whole(sound.sampleCount()));
    if (channelsOf(other) == channelsOf(sound)) {
        list.add(other, all);
        return soundOf(list, sound);
    }
    EditWatch watch;
    const SoundCopy::Copy fitting = SoundCopy::flat(other, all, channelsOf(sound), watch);
    if (!fitting.wave)
        return refused(fitting.error);
    list.add(VornWaveBlock::blockWithWave(fitting.wave));
    return soundOf(list, sound);
}
