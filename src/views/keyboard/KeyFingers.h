#pragma once

#include <QPointF>
#include <QPointer>
#include <functional>
#include <vector>

#include "keyboard/PianoKeyButton.h"

/// Names a finger: the device that feels it, and its number there. The mouse is one more finger.
struct FingerId {
    const QObject* device = nullptr;  ///< only compared
    int number = 0;
    bool operator==(const FingerId&) const = default;
};

/// Follows fingers over the keys and says to the keys what happens to them. All fingers share the
/// one highlight of a key: the first to leave it releases it. A finger holds the key that was below
/// it when it last moved, also when the keyboard has been scrolled since. [main]
class KeyFingers {
  public:
    using FindKey = std::function<PianoKeyButton*(QPointF)>;

    /// @param keyAt  the key at a point, or null
    explicit KeyFingers(FindKey keyAt) : m_keyAt(std::move(keyAt)) {}

    void began(FingerId id, QPointF at) { began(id, at, m_keyAt(at)); }
    /// On a key of its choice.
    void began(FingerId id, QPointF at, PianoKeyButton* key);
    void moved(FingerId id, QPointF to);
    void ended(FingerId id, QPointF at);
    /// As if it had been lifted where it was last.
    void cancelled(FingerId id);
    void cancelAll();
    void cancelWhere(const std::function<bool(FingerId)>& gone);

    /// The keys are about to be others: releases those that are held.
    void releaseKeys();
    /// The keys are others: each finger rests, silent, on what is below it now.
    void findKeys();

    bool isDown(FingerId id) const;

  private:
    struct Finger {
        FingerId id;
        QPointF at;
        QPointer<PianoKeyButton> key;
    };
    Finger* find(FingerId id);
    void lift(FingerId id, PianoKeyButton* under);

    FindKey m_keyAt;
    std::vector<Finger> m_fingers;
};
