#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Ears.h"
#include "InstrumentWindow.h"

/// Someone who tries everything on the screen with a finger, plays the same phrase after each step,
/// and notes what is to be heard of it.
class Walk {
  public:
    /// Pictures go to `folder`.
    Walk(InstrumentWindow& instrument, Ears& ears, std::string folder)
        : m_instrument(instrument), m_ears(ears), m_folder(std::move(folder)) {}

    /// What is to be heard after a step, compared with the phrase before it.
    enum class Effect { sounds, changes, anything };

    /// Does something, waits until it has had its effect, plays the phrase, and takes a picture.
    void step(const std::string& name, Effect effect, const std::function<void()>& action);
    /// Says what was to be heard of each step; whether all is as it should be. After the ears have
    /// been closed.
    bool tell() const;
    /// Something that must be true.
    void expect(const std::string& what, bool truth);

    InstrumentWindow& instrument() { return m_instrument; }
    void picture(const std::string& name);

  private:
    struct Phrase {
        std::string name;
        Effect effect;
        double from;  // seconds
        double to;
    };
    void playPhrase();

    InstrumentWindow& m_instrument;
    Ears& m_ears;
    std::string m_folder;
    std::vector<Phrase> m_phrases;
    std::vector<std::string> m_failures;
    int m_pictures = 0;
};
