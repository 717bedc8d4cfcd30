#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "LookupTable.h"
#include "VornWaveBlock.h"
#include "WaveAccess.h"
#include "propertylists/PropertyListValue.h"

/// One sound: blocks in playing order, with one description. Never changes; editing makes new
/// sequences that share the blocks, and copies no samples until a sound has to lie in one piece.
/// Made on the main thread; windows of it may be read on any thread while it lives.
class VornWaveSequence : public WaveSequenceAccess,
                         public std::enable_shared_from_this<VornWaveSequence> {
  public:
    using Blocks = std::vector<std::shared_ptr<VornWaveBlock>>;
    using Pointer = std::shared_ptr<VornWaveSequence>;

    static Pointer initWithBlocks(Blocks blocks, const StreamDescription& description,
                                  ExtractType extract);
    static Pointer initWithBlock(std::shared_ptr<VornWaveBlock> block);
    /// No blocks.
    static Pointer initWithDescription(const StreamDescription& description);
    static Pointer sequenceWithBlocks(Blocks blocks, const StreamDescription& description,
                                      ExtractType extract) {
        return initWithBlocks(std::move(blocks), description, extract);
    }
    static Pointer sequenceWithBlock(std::shared_ptr<VornWaveBlock> block) {
        return initWithBlock(std::move(block));
    }
    static Pointer sequenceWithWave(std::shared_ptr<VornWave2> wave);
    /// The other's blocks, all channels.
    static Pointer sequenceWithSourceSequence(const VornWaveSequence& source);
    /// Stereo from two mono sequences; where both are the channels of one stereo sound its blocks
    /// are taken over, elsewhere waves of memory are made, to be saved into `folder` if at all.
    static Pointer sequenceByMergingMonoSequenceLeft(const VornWaveSequence& left,
                                                     const VornWaveSequence& right,
                                                     const std::string& folder);
    /// The inverse of dictionaryRepresentationUsingWavetable. Null for what is no such dictionary,
    /// refers to a wave that is not in the table, or holds a number out of its range.
    static Pointer sequenceFromDictionary(const PropertyListValue& dictionary,
                                          const std::vector<std::shared_ptr<VornWave2>>& wavetable);

    Pointer sequenceByAppendingBlock(std::shared_ptr<VornWaveBlock> block) const;
    Pointer sequenceByAppendingSequence(const VornWaveSequence& other) const;
    /// Channel 0 is the second sample of each frame, any other the first.
    Pointer sequenceBySlicingChannel(std::uint32_t channel) const;

    std::uint32_t sampleCount() const override;
    /// While a channel is extracted: one description for the whole process, which keeps the rate
    /// and sample format of the first such sequence that was asked. [main]
    const StreamDescription* audioDescription() const override;
    const Blocks& blocks() const { return m_blocks; }
    ExtractType extractType() const { return m_extractType; }
    void setExtractType(ExtractType type) { m_extractType = type; }
    /// True for a sequence without blocks too.
    bool isEntirelySilence() const;
    /// Position of the block that holds frame *index, which becomes the frame within the block; -1
    /// past the end.
    std::int32_t getBlockIndexForDataIndex(std::uint32_t* index) const;
    std::shared_ptr<VornWaveBlock> getBlockForDataIndex(std::uint32_t* index) const;
    /// The distinct waves behind the blocks.
    std::set<std::shared_ptr<VornWave2>> onDiskSourceList() const;

    /// Null, with *count untouched, when `at` lies past the end. Blocks that are loading add no
    /// windows. Asked for no frames it gives an empty list.
    WaveWindowList retrieveWindowsAt(std::uint32_t at, std::uint32_t* count) const override;
    /// Block after block, each in its own layout. While a channel is extracted from stereo it is
    /// no copy: every window raises one sample of its wave by 2 for each frame and yields the
    /// values, with as many floats left out behind them, so that `into` takes two per frame. [main]
    std::uint32_t write(std::uint32_t frames, float* into) const override;
    std::shared_ptr<WaveAccess> sliceBlockFrom(std::uint32_t from,
                                               std::uint32_t count) const override;
    /// Null past the end, and for a start behind block 32767.
    Pointer sliceFrom(std::uint32_t from, std::uint32_t count) const override;
    /// What a block that is loading does not deliver is missing, with as many zeros at the end. No
    /// frames when there is no memory or the sum of the blocks exceeds 32 bits.
    std::shared_ptr<VornWave2> flattenInto(const std::string& folder,
                                           std::uint32_t channels) const override;

    /// One block of at least `length` frames in one piece, zeros at the end; null for silence.
    std::shared_ptr<VornWaveBlock> flattenAndPadSequenceTo(std::uint32_t length,
                                                           const std::string& folder) const;
    /// The same of one channel, mono at 44100 Hz: the second sample of each frame where the flag is
    /// set. The blocks must not hold more than `length` frames.
    std::shared_ptr<VornWaveBlock> flattenAndPadSequenceTo(std::uint32_t length,
                                                           const std::string& folder,
                                                           bool oneChannelOnly) const;

    /// A sequence whose waves all live in `folder`: files are linked there, else copied. This very
    /// sequence when they do already. With a wave whose file has gone, or that never had one, the
    /// whole becomes one wave in memory; one that cannot be brought along stays where it is.
    Pointer remapIntoDocumentFolder(const std::string& folder) const;

    PropertyListValue dictionaryRepresentationUsingWavetable(LookupTable& wavetable) const;

  private:
    VornWaveSequence(Blocks blocks, const StreamDescription& description, ExtractType extract);

    std::uint64_t length() const;
    /// Position of the block that holds the frame; the number of blocks past the end.
    std::size_t positionOf(std::uint64_t frame) const;
    std::uint64_t startOf(std::size_t position) const;
    std::uint32_t writeBlocks(std::uint32_t frames, float* into) const;
    std::uint32_t writeOne(std::uint32_t frames, float* into) const;
    std::shared_ptr<VornWaveBlock> padded(std::uint32_t length, const std::string& folder) const;
    std::shared_ptr<VornWaveBlock> oneChannelPadded(std::uint32_t length, const std::string& folder,
                                                    bool second) const;

    Blocks m_blocks;
    std::vector<std::uint64_t> m_ends;  // of each block, in frames from the start
    StreamDescription m_myAudioDescription;
    ExtractType m_extractType = ExtractType::all;
};
