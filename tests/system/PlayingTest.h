#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "RenderWatch.h"
#include "Tone.h"
#include "ToneClient.h"

/// Plays the tone through a device that is chosen by name, as the program does, and checks that no
/// render takes memory or a lock or calls the system.
class PlayingTest : public testing::Test {
  protected:
    void play(const std::string& device, bool capture = false);
    /// Stops, and checks what the client has seen.
    void stop();
    void TearDown() override { stop(); }

    ToneClient& client() { return *m_client; }
    static AudioDeviceInfo info();
    /// Waits until the device of that name plays; a generous time.
    static bool comesTo(const std::string& name);
    static void expectTone(const Tone& tone);

  private:
    std::unique_ptr<ToneClient> m_client;
    std::unique_ptr<RenderWatch> m_watch;
};
