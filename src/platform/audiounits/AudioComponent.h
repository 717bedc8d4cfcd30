#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "audiounits/AudioUnit.h"

/// A registered kind of audio unit. Lives as long as the process; compared by address.
struct RegisteredComponent {
    AudioComponentDescription description;
    std::function<std::unique_ptr<AudioUnitInstance>()> make;
};
using AudioComponent = const RegisteredComponent*;

/// All kinds of audio unit that this process can make. [control] Safe from any thread but [render].
class AudioComponentRegistry {
  public:
    /// The one registry, holding hardware I/O, both mixers, format converter and equaliser.
    static AudioComponentRegistry& shared();

    /// Puts a component in front of those already there, so that it is the first to be found:
    /// how a test takes a real component's place.
    AudioComponent add(RegisteredComponent component);
    void remove(AudioComponent component);

    /// The first match behind `after` (null: from the first), or null. A field that is 0 in
    /// `wanted` matches anything.
    AudioComponent findNext(AudioComponent after, const AudioComponentDescription& wanted) const;

  private:
    AudioComponentRegistry();

    mutable std::mutex m_mutex;
    std::vector<std::unique_ptr<RegisteredComponent>> m_components;  // first found first
    std::vector<std::unique_ptr<RegisteredComponent>> m_removed;     // handles stay valid
};

AudioComponent AudioComponentFindNext(AudioComponent after,
                                      const AudioComponentDescription* wanted);
OSStatus AudioComponentGetDescription(AudioComponent component, AudioComponentDescription* out);
/// A new instance, owned by the caller until AudioComponentInstanceDispose. Null on failure.
OSStatus AudioComponentInstanceNew(AudioComponent component, AudioUnit* out);
OSStatus AudioComponentInstanceDispose(AudioUnit unit);
