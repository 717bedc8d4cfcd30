#include "editing/EditSession.h"

#include <chrono>
#include <thread>

#include "VornWave2.h"
#include "editing/SpanEdits.h"

namespace {

EditSessionDelegate nobody;

constexpr auto kLookAtLoad = std::chrono::milliseconds(5);

/// The wave that the sound is, from its first to its last frame; null for any other sound.
std::shared_ptr<VornWave2> wholeWaveOf(const VornWaveSequence& sound) {
    if (sound.blocks().size() != 1)
        return nullptr;
    const VornWaveBlock& block = *sound.blocks().front();
    const auto& wave = block.waveOrNil();
    const bool whole = wave && block.startIndex() == 0 && block.frameCount() == wave->sampleCount();
    return whole ? wave : nullptr;
}

SpanEdits::Kind kindOf(SoundEdit edit) {
    switch (edit) {
        case SoundEdit::fadeIn:
            return SpanEdits::Kind::fadeIn;
        case SoundEdit::fadeOut:
            return SpanEdits::Kind::fadeOut;
        case SoundEdit::reverse:
            return SpanEdits::Kind::reverse;
        default:
            return SpanEdits::Kind::normalise;
    }
}

/// After a crop and a cut everything, else what was selected before.
EditSpan selectionAfter(SoundEdit edit, const EditSpan& selection, const VornWaveSequence& sound) {
    const bool everything = edit == SoundEdit::crop || edit == SoundEdit::cut;
    return everything ? EditSpan::whole(sound.sampleCount()) : selection;
}

/// Reads a file as `WaveChoice::read` does, and gives up soon when it is to.
WaveChoice::Loaded loadWatched(const std::string& path, EditWatch& watch) {
    const auto wave = WaveChoice::waveOf(path);
    wave->fetch(0);
    while (wave->bkgLoadState() != VornWave2::loaded) {
        if (watch.unwanted)
            wave->abandon();
        watch.progress = wave->progress();
        std::this_thread::sleep_for(kLookAtLoad);
    }
    return WaveChoice::read(wave, path);
}

}  // namespace

EditSession::EditSession(WaveChoice& waves, UnsavedTake* unsaved)
    : m_waves(waves), m_unsaved(unsaved), m_delegate(&nobody) {
    soundChanged();
}

EditSession::~EditSession() {
    m_waves.settle();
}

void EditSession::setDelegate(EditSessionDelegate* delegate) {
    m_delegate = delegate ? delegate : &nobody;
}

void EditSession::soundChanged() {
    if (!m_waves.currentWave() || m_choice == m_waves.choices())
        return;
    m_choice = m_waves.choices();
    m_flattening.cancel();
    cancel();
    const auto& now = m_waves.currentWave();
    discard(m_history.begin({now, EditSpan::whole(now->sampleCount())}));
    m_delegate->editingChanged();
}

/// Whether what was begun is about the sound that is still in use.
bool EditSession::isOurs() {
    const bool same = m_choice == m_waves.choices();
    soundChanged();
    return same;
}

/// Whether an edit can begin now.
bool EditSession::ready() {
    soundChanged();
    return m_history.started() && !busy();
}

void EditSession::edit(SoundEdit edit, const EditSpan& selection) {
    if (!ready() || edit == SoundEdit::join)
        return;
    const EditSpan span = EditSpan::between(selection.from, selection.to, sound()->sampleCount());
    const bool isWork = edit >= SoundEdit::fadeIn;
    if (!isWork)
        return apply(atOnce(edit, span), edit, span);
    if (span.empty())
        return m_delegate->editingTold(SoundEdits::emptyFault(span));
    beginWork(edit, span);
}

SoundEdits::Edited EditSession::atOnce(SoundEdit edit, const EditSpan& span) const {
    switch (edit) {
        case SoundEdit::crop:
            return SoundEdits::crop(*sound(), span);
        case SoundEdit::cut:
            return SoundEdits::cut(*sound(), span);
        default:
            return SoundEdits::silence(*sound(), span);
    }
}

void EditSession::beginWork(SoundEdit edit, const EditSpan& span) {
    const auto made = std::make_shared<SoundCopy::Copy>();
    m_work.begin([made, sound = sound(), span, kind = kindOf(edit)](
                     EditWatch& watch) { *made = SpanEdits::edited(*sound, span, kind, 1, watch); },
                 [this, made, edit, span] {
                     if (!isOurs())
                         return;
                     if (made->wave)
                         apply(SoundEdits::replace(*sound(), span, made->wave), edit, span);
                     else
                         apply({nullptr, made->error}, edit, span);
                 });
    m_delegate->editingChanged();
}

void EditSession::join(const std::string& path, const EditSpan& selection) {
    if (!ready())
        return;
    const auto loaded = std::make_shared<WaveChoice::Loaded>();
    loaded->error = path + ": not enough memory for this sound";
    m_joining.begin([loaded, path](EditWatch& watch) { *loaded = loadWatched(path, watch); },
                    [this, loaded, selection] {
                        if (isOurs())
                            apply(withBehind(*loaded), SoundEdit::join, selection);
                    });
    m_delegate->editingChanged();
}

SoundEdits::Edited EditSession::withBehind(const WaveChoice::Loaded& loaded) {
    if (!loaded.notice.empty())
        m_delegate->editingTold(loaded.notice);
    if (!loaded.wave)
        return {nullptr, loaded.error};
    WaveChoice::generate(loaded);
    const auto other = VornWaveSequence::sequenceWithWave(loaded.wave);
    if (std::uint64_t{sound()->sampleCount()} + other->sampleCount() > kMostFrames)
        return {nullptr, loaded.filename +
                             ": both sounds together would be longer than 20 "
                             "minutes, which is the limit"};
    return SoundEdits::join(*sound(), *other);
}

/// Without a sound nothing changes but that work has ended.
void EditSession::apply(SoundEdits::Edited edited, SoundEdit edit, const EditSpan& selection) {
    if (!edited.refusal.empty())
        m_delegate->editingTold(edited.refusal);
    if (!edited.sound)
        return m_delegate->editingChanged();
    leave();
    m_history.now().selection = selection;
    const EditSpan next = selectionAfter(edit, selection, *edited.sound);
    discard(m_history.add(nameOf(edit), {std::move(edited.sound), next}));
    present();
}

void EditSession::undo() {
    if (!ready() || !m_history.canUndo())
        return;
    leave();
    m_history.undo();
    present();
}

void EditSession::redo() {
    if (!ready() || !m_history.canRedo())
        return;
    leave();
    m_history.redo();
    present();
}

float EditSession::progress() const {
    return m_work.busy() ? m_work.progress() : m_joining.progress();
}

void EditSession::cancel() {
    const bool given = busy();
    m_work.cancel();
    m_joining.cancel();
    if (given)
        m_delegate->editingChanged();
}

/// The sound may have been given a name since it is there.
void EditSession::leave() {
    if (!handingOver())
        m_history.now().file = m_waves.identity();
}

void EditSession::present() {
    const EditState& state = m_history.now();
    const auto flat = state.flat.lock();
    const auto wave = flat ? flat : wholeWaveOf(*state.sound);
    m_flattening.cancel();
    m_waves.showEdited(state.sound, [this] { m_flattening.finish(); });
    if (wave)
        handOver(wave);
    else
        flatten();
    m_delegate->soundEdited();
    m_delegate->editingChanged();
}

void EditSession::flatten() {
    const auto made = std::make_shared<SoundCopy::Copy>();
    m_flattening.begin(
        [made, sound = sound()](EditWatch& watch) {
            *made = SoundCopy::flat(*sound, EditSpan::whole(sound->sampleCount()), 1, watch);
        },
        [this, made] {
            if (!isOurs())
                return;
            if (made->wave)
                handOver(made->wave);
            else
                flatteningFailed(made->error);
        });
}

void EditSession::handOver(std::shared_ptr<VornWave2> wave) {
    EditState& state = m_history.now();
    m_old.add(m_waves.currentWave());
    state.flat = wave;
    m_waves.useEdited(wave, state.file);
    if (state.sound->blocks().size() > kMostBlocks)
        state.sound = VornWaveSequence::sequenceWithWave(wave);
    keep();
}

/// Without memory the last state that can be played is taken; the first one always can.
void EditSession::flatteningFailed(const std::string& error) {
    m_delegate->editingTold(error);
    m_history.undo();
    present();
}

void EditSession::keep() {
    if (!m_unsaved)
        return;
    if (m_waves.currentWaveFilename())
        return m_unsaved->forgetLater();
    m_unsaved->storeLater(m_waves.currentWave(),
                          [this, alive = std::weak_ptr(m_alive)](const std::string& line) {
                              if (!alive.expired())
                                  m_delegate->editingTold(line);
                          });
}

void EditSession::discard(std::vector<EditState> states) {
    for (EditState& state : states)
        m_old.add(std::move(state.sound));
}
