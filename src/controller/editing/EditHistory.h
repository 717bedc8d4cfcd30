#pragma once

#include <string>
#include <vector>

#include "VornWaveSequence.h"
#include "editing/EditSpan.h"
#include "wavechoice/WaveChoice.h"

/// A sound between two edits.
struct EditState {
    VornWaveSequence::Pointer sound;
    EditSpan selection;  // as it was when the state was left, or is to be when it is new
    WaveChoice::Identity file = {};      // where it is stored, if it is
    std::weak_ptr<VornWave2> flat = {};  // in one piece, while anyone plays it
};

/// Every state of a sound since it became the one in use, and the names of the edits between them.
/// States share blocks, so there is no limit to them. [main]
class EditHistory {
  public:
    /// A new history; what was there is answered, to be let go of.
    std::vector<EditState> begin(EditState first);
    /// After an edit. What could be redone is answered.
    std::vector<EditState> add(std::string name, EditState next);

    bool started() const { return !m_states.empty(); }
    /// Once a history was begun.
    EditState& now() { return m_states[m_at]; }
    const EditState& now() const { return m_states[m_at]; }

    bool canUndo() const { return m_at > 0; }
    bool canRedo() const { return m_at + 1 < m_states.size(); }
    /// Of the edit that would be undone; empty for none.
    std::string undoName() const { return canUndo() ? m_names[m_at - 1] : ""; }
    std::string redoName() const { return canRedo() ? m_names[m_at] : ""; }
    void undo() { m_at -= canUndo(); }
    void redo() { m_at += canRedo(); }

  private:
    std::vector<EditState> m_states;
    std::vector<std::string> m_names;  // of the edit behind each state but the last
    std::size_t m_at = 0;
};
