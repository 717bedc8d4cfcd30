#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Ears.h"
#include "InstrumentWindow.h"

/// Someone who tries everything on the screen with a finger, plays the same phrase after each step,
/// and notes what is to be heard of it.
class Walk {
  public:
    /// Pictures go to `folder`. The instrument has to be opened first.
    Walk(Ears& ears, std::string folder) : m_ears(ears), m_folder(std::move(folder)) {}

    void open();
    /// Ends the instrument as its user does.
    void close() { m_instrument.reset(); }
    InstrumentWindow& instrument() { return *m_instrument; }
    OmbrixViewController& controller() { return m_instrument->controller(); }
    Ears& ears() { return m_ears; }

    /// What is to be heard after a step, compared with the phrase before it.
    enum class Effect { sounds, changes, stays };

    /// Does something, waits until it has had its effect, takes a picture, and plays the phrase.
    void step(const std::string& name, Effect effect, const std::function<void()>& action);
    /// Does something that is not to be heard.
    void show(const std::string& name, const std::function<void()>& action);
    /// Does something that is to be heard while it is done.
    void hear(const std::string& name, const std::function<void()>& action);
    /// Something that must be true.
    void expect(const std::string& what, bool truth);
    /// The same, within some seconds.
    void expectSoon(const std::string& what, const std::function<bool()>& truth);
    void playPhrase();
    /// A file holds what was to be heard between two moments of the ears.
    void expectRecorded(const std::string& file, double from, double to);
    /// Nothing is to be heard between two moments of the ears.
    void expectSilence(const std::string& name, double from, double to) {
        m_listened.push_back({name, from, to, true});
    }
    /// Types into what has the focus.
    void type(const QString& text);
    /// A finger pulls a list until an item of it is seen.
    void scrollTo(const QString& list, const QString& item);

    /// Says what was to be heard of each step; whether all is as it should be. After the ears have
    /// been closed.
    bool tell() const;

  private:
    struct Phrase {
        std::string name;
        Effect effect;
        double from;  // seconds
        double to;
    };
    struct Listened {
        std::string name;
        double from;
        double to;
        bool silent = false;
    };
    struct Recorded {
        std::string file;
        double from;
        double to;
    };
    bool tellRecorded(const Recorded& recorded) const;
    /// Settings and takes start the audio device anew, which ends its connections.
    void listenAgain();
    void begin(const std::string& name, const std::function<void()>& action);
    void picture(const std::string& name);

    Ears& m_ears;
    std::string m_folder;
    std::unique_ptr<InstrumentWindow> m_instrument;
    std::vector<Phrase> m_phrases;
    std::vector<Listened> m_listened;
    std::vector<Recorded> m_recorded;
    std::vector<std::string> m_failures;
    int m_pictures = 0;
};
