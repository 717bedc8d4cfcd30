#pragma once

#include <QObject>
#include <QStringList>
#include <deque>
#include <functional>

#include "parameters/Settings.h"
#include "runloop/RunLoop.h"

/// Files from outside, told apart by what they hold: presets and bundles are taken into the store
/// and the last is chosen; the last sound becomes the sound in use, and is kept in the data folder.
/// One file at each turn of the main loop. [main]
class FileOpening : public QObject {
    Q_OBJECT

  public:
    using Tell = std::function<void(const std::string& line)>;

    FileOpening(Settings& settings, PresetStore& store, Tell tell);
    ~FileOpening() override;

    /// Paths, or addresses of local files.
    void open(const QStringList& files);

    /// Whether files are still to be opened.
    bool busy() const { return m_next != 0; }

  private:
    void openNext();
    void importPresets(const std::string& path);
    void refuse(const std::string& line);
    void finish();
    void tellRefused();

    Settings& m_settings;
    PresetStore& m_store;
    Tell m_tell;
    std::deque<std::string> m_files;
    std::string m_preset;  // the last that was taken in
    std::string m_sound;   // the last
    bool m_soundIsLast = false;
    std::string m_refused;  // the first line
    int m_refusals = 0;
    RunLoop::Token m_next = 0;  // 0: nothing to do
};
