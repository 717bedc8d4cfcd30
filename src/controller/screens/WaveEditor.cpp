#include "screens/WaveEditor.h"

#include "screens/WaveTime.h"

namespace {

constexpr double kProgressSeconds = 1.0 / 15;  // also how long work goes without being shown

QString named(SoundEdit edit) {
    return WaveEditor::tr(nameOf(edit));
}

QString withName(const QString& verb, const std::string& name) {
    return name.empty() ? verb : verb + ' ' + WaveEditor::tr(name.c_str());
}

}  // namespace

WaveEditor::WaveEditor(const Rooms& rooms, Tell tell)
    : m_rooms(rooms), m_tell(std::move(tell)), m_session(rooms.waves, rooms.unsaved) {
    m_session.setDelegate(this);
    connect(&m_rooms.state, &WaveState::waveChanged, this, [this] { m_session.soundChanged(); });
    connect(&m_rooms.state, &WaveState::loadingChanged, this, &WaveEditor::changed);
    connect(&m_rooms.selection, &WaveSelection::changed, this, &WaveEditor::changed);
}

WaveEditor::~WaveEditor() {
    RunLoop::main().cancel(m_looking);
    m_session.setDelegate(nullptr);
}

bool WaveEditor::canJoin() const {
    return m_session.history().started() && !m_shownBusy && !m_rooms.sounds.loading();
}

QString WaveEditor::undoText() const {
    return withName(tr("Undo"), m_session.history().undoName());
}

QString WaveEditor::redoText() const {
    return withName(tr("Redo"), m_session.history().redoName());
}

QString WaveEditor::lengthText() const {
    return WaveTime::text(m_rooms.selection.length());
}

QString WaveEditor::selectionText() const {
    const WaveSelection& selection = m_rooms.selection;
    return tr("%1 to %2, %3 long")
        .arg(WaveTime::text(selection.start()), WaveTime::text(selection.stop()),
             WaveTime::text(selection.stop() - selection.start()));
}

EditSpan WaveEditor::selected() const {
    return {static_cast<std::uint32_t>(m_rooms.selection.start()),
            static_cast<std::uint32_t>(m_rooms.selection.stop())};
}

/// While a sound is on its way it is not clear what an edit is meant for.
void WaveEditor::edit(SoundEdit edit) {
    if (m_rooms.sounds.loading())
        return;
    m_busyText = named(edit);
    m_session.edit(edit, selected());
}

void WaveEditor::join(const QUrl& file) {
    if (m_rooms.sounds.loading())
        return;
    const QString path = file.isLocalFile() ? file.toLocalFile() : file.path();
    m_busyText = named(SoundEdit::join);
    m_session.join(path.toStdString(), selected());
}

void WaveEditor::undo() {
    if (!m_rooms.sounds.loading())
        m_session.undo();
}

void WaveEditor::redo() {
    if (!m_rooms.sounds.loading())
        m_session.redo();
}

void WaveEditor::playOrStop() {
    if (m_rooms.hearing.playing())
        m_rooms.hearing.stop();
    else
        m_rooms.hearing.playFrom(m_rooms.selection.start(), m_rooms.selection.stop());
}

void WaveEditor::soundEdited() {
    const EditSpan now = m_session.selection();
    m_rooms.state.updateEdited();
    m_rooms.selection.select(static_cast<int>(now.from), static_cast<int>(now.to));
    Q_EMIT edited();
}

void WaveEditor::editingChanged() {
    if (m_session.busy() && !m_looking)
        m_looking = RunLoop::main().callEvery(kProgressSeconds, [this] { look(); });
    if (!m_session.busy()) {
        RunLoop::main().cancel(m_looking);
        m_looking = 0;
        m_shownBusy = false;
    }
    Q_EMIT changed();
}

void WaveEditor::look() {
    m_progress = m_session.progress();
    Q_EMIT progressChanged();
    if (std::exchange(m_shownBusy, true))
        return;
    Q_EMIT changed();
}
