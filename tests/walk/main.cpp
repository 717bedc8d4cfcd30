#include <cmath>
#include <cstdio>
#include <filesystem>
#include <numbers>

#include "JackServer.h"
#include "SoundFiles.h"
#include "Steps.h"
#include "WindowSession.h"
#include "audiounits/devices/AudioDevices.h"

// walk FOLDER: leaves pictures and what was heard in FOLDER, and ends with 1 when something was not
// as it should be.

namespace {

/// What the microphone is to hear: ten seconds of a tone rich in harmonics.
std::string makeTone(const std::string& folder) {
    std::vector<std::int16_t> frames(441000);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const double turn = std::fmod(double(i) * 311 / 44100, 1.0);
        frames[i] = static_cast<std::int16_t>(turn < 0.2 ? 16000 : -4000);
    }
    const std::string file = folder + "/tone.wav";
    SoundFiles::write(file, SoundFiles::wav({}, SoundFiles::bytes(frames)));
    return file;
}

bool walkThrough(const WindowSession& session, const std::string& folder) {
    Ears ears(folder + "/walk.wav");
    Walk walk(ears, folder);
    walk.open();
    walk.step("opened", Walk::Effect::sounds, [] {});
    stepThroughPresets(walk);
    pickPreset(walk, "Default Sound");
    turnEveryDial(walk);
    pickPreset(walk, "Glass Lake");
    dragTheEnvelope(walk);
    recordATake(walk, makeTone(session.folder().file("")));
    pickEveryGrainMode(walk);
    exploreAWave(walk, session.folder().file(""));
    keepAPreset(walk);
    recordAPerformance(walk);
    playFromAnotherProgram(walk);
    playOverTheNetwork(walk);
    changeEverySetting(walk);
    followTheTutorial(walk);
    startAgain(walk);
    walk.close();
    ears.close();
    return walk.tell();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        return std::fputs("walk FOLDER\n", stderr), 2;
    std::filesystem::create_directories(argv[1]);
    JackServer server;
    server.start(44100, 256, 20000);
    const WindowSession session(1400, 900);
    std::string error;
    AudioDevices::choose("jack", error);
    try {
        return walkThrough(session, std::filesystem::absolute(argv[1])) ? 0 : 1;
    } catch (const std::exception& fault) {
        std::printf("the walk broke off: %s\n", fault.what());
        return 1;
    }
}
