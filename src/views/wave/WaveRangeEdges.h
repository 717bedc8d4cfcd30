#pragma once

#include "WaveAccess.h"

/// A selected stretch whose edges are moved by hand, in frames of a sound of `length`. [any thread]
struct WaveRangeEdges {
    enum Edge { atStart, atStop };

    int start = 0;
    int stop = 0;
    int length = 0;

    int at(Edge edge) const { return edge == atStart ? start : stop; }
    /// Moves one edge; it pushes the other along, so that one frame stays selected at least.
    void move(Edge edge, int frame);

    /// The nearest frame where the sound can be cut without a click, if there is one within so many
    /// frames; else the same. The sound's ends stay.
    int snapped(const WaveAccess& sound, int frame, int within) const;
};
