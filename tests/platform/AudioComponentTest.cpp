#include "audiounits/AudioComponent.h"

#include <gtest/gtest.h>

TEST(AudioComponent, isFoundByTypeSubtypeAndManufacturerAndMadeIntoInstances) {
    for (const auto& [type, subtype] :
         {std::pair{fourCC("auou"), fourCC("rioc")}, std::pair{fourCC("aumx"), fourCC("mcmx")},
          std::pair{fourCC("aufc"), fourCC("conv")}, std::pair{fourCC("aumx"), fourCC("3dem")},
          std::pair{fourCC("aufx"), fourCC("ipeq")}}) {
        const AudioComponentDescription wanted{type, subtype, fourCC("appl"), 0, 0};
        const AudioComponent found = AudioComponentFindNext(nullptr, &wanted);
        ASSERT_TRUE(found);
        EXPECT_FALSE(AudioComponentFindNext(found, &wanted));
        AudioComponentDescription described;
        ASSERT_EQ(AudioComponentGetDescription(found, &described), noErr);
        EXPECT_EQ(described.componentSubType, subtype);
        AudioUnit unit = nullptr;
        ASSERT_EQ(AudioComponentInstanceNew(found, &unit), noErr);
        EXPECT_EQ(AudioComponentInstanceDispose(unit), noErr);
    }
    const AudioComponentDescription stranger{fourCC("aumx"), fourCC("mcmx"), fourCC("none"), 0, 0};
    EXPECT_FALSE(AudioComponentFindNext(nullptr, &stranger));
    AudioUnit unit = nullptr;
    EXPECT_EQ(AudioComponentInstanceNew(nullptr, &unit), kAudio_ParamError);
}

TEST(AudioComponent, callsOnNoInstanceAreBadArguments) {
    std::uint32_t number = 0;
    std::uint32_t size = sizeof number;
    EXPECT_EQ(AudioUnitSetProperty(nullptr, 1, 1, 0, &number, 4), kAudio_ParamError);
    EXPECT_EQ(AudioUnitGetProperty(nullptr, 1, 1, 0, &number, &size), kAudio_ParamError);
    EXPECT_EQ(AudioUnitInitialize(nullptr), kAudio_ParamError);
    EXPECT_EQ(AudioOutputUnitStart(nullptr), kAudio_ParamError);
}
