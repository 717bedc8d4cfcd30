#pragma once

#include <algorithm>
#include <set>
#include <vector>

#include "VornWaveSequence.h"

/// A sequence as plain lists of frames: the slow obvious way, to hold the real one against.
struct SequenceModel {
    struct Frame {
        float left, right;  // both the same in mono
        bool operator==(const Frame&) const = default;
    };
    using Frames = std::vector<Frame>;
    struct Piece {
        Frames frames;
        std::uint32_t channels;
        bool silent = false, loading = false;
        /// Frames that windows hold: longer silence comes in several.
        std::size_t windowFrames() const {
            return silent ? 44100u / channels : std::max<std::size_t>(frames.size(), 1);
        }
    };

    std::vector<Piece> pieces;
    ExtractType type = ExtractType::all;

    static Frame channelOf(Frame frame, ExtractType type) {
        if (type == ExtractType::first)
            frame.right = frame.left;
        else if (type == ExtractType::second)
            frame.left = frame.right;
        return frame;
    }
    std::size_t length() const {
        std::size_t sum = 0;
        for (const Piece& piece : pieces)
            sum += piece.frames.size();
        return sum;
    }
    bool has(bool Piece::*what) const { return std::ranges::any_of(pieces, what); }
    bool isAll(std::uint32_t channels) const {
        return std::ranges::all_of(pieces, [=](auto& piece) { return piece.channels == channels; });
    }

    /// What can be read, as the extract type has it; what loads is left out.
    Frames heard() const {
        Frames all;
        for (const Piece& piece : pieces)
            for (const Frame& frame : piece.loading ? Frames() : piece.frames)
                all.push_back(channelOf(frame, type));
        return all;
    }
    /// The frames of each window of what can be read.
    std::vector<std::size_t> windows() const {
        std::vector<std::size_t> lengths;
        for (const Piece& piece : pieces)
            for (std::size_t at = 0; at < piece.frames.size() && !piece.loading;
                 at += piece.windowFrames())
                lengths.push_back(std::min(piece.windowFrames(), piece.frames.size() - at));
        return lengths;
    }

    SequenceModel slice(std::size_t from, std::size_t count) const {
        SequenceModel result{{}, type};
        for (Piece piece : pieces) {
            const std::size_t begin = std::min(from, piece.frames.size());
            const std::size_t taken = std::min(count, piece.frames.size() - begin);
            from -= begin;
            count -= taken;
            const Frames& all = piece.frames;
            piece.frames = Frames(all.begin() + std::ptrdiff_t(begin),
                                  all.begin() + std::ptrdiff_t(begin + taken));
            if (taken > 0)
                result.pieces.push_back(std::move(piece));
        }
        return result;
    }

    /// Pairs, cut where a window of either side ends, then the rest of one window of the longer.
    static SequenceModel merged(const SequenceModel& left, const SequenceModel& right) {
        const Frames a = left.heard(), b = right.heard();
        const std::size_t paired = std::min(a.size(), b.size());
        std::set<std::size_t> ends;
        for (const SequenceModel* side : {&left, &right}) {
            std::size_t end = 0;
            for (std::size_t window : side->windows()) {
                if (end <= paired)
                    ends.insert(end += window);
            }
        }
        SequenceModel result;
        std::size_t begin = 0;
        for (std::size_t end : ends) {
            Frames frames;
            for (std::size_t i = begin; i < end; ++i)
                frames.push_back({i < a.size() ? a[i].left : 0.f, i < b.size() ? b[i].left : 0.f});
            result.pieces.push_back({std::move(frames), 2});
            begin = end;
        }
        return result;
    }
};
