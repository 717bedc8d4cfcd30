#include "screens/iPadTutorialManager.h"

#include <algorithm>

#include "defaults/UserDefaults.h"
#include "log/Log.h"
#include "screens/Presentation.h"

iPadTutorialManager::iPadTutorialManager(std::vector<TutorialItem> items, std::string progressKey,
                                         UserDefaults& defaults)
    : m_items(std::move(items)),
      m_progressKey(std::move(progressKey)),
      m_defaults(defaults),
      m_progress(std::max<std::int64_t>(0, defaults.integer(m_progressKey).value_or(0))),
      m_token(NotificationCentre::defaultCentre().addObserver(kPopoverNotification,
                                                              [this] { popupNote(); })) {}

iPadTutorialManager::~iPadTutorialManager() {
    NotificationCentre::defaultCentre().removeObserver(m_token);
    hide();
}

void iPadTutorialManager::setProgress(std::int64_t progress) {
    m_progress = progress;
    m_defaults.set(m_progressKey, progress);
}

void iPadTutorialManager::show() {
    if (!isLeft())
        return finished();
    const TutorialItem& item = m_items[std::size_t(m_progress)];
    setProgress(m_progress + 1);
    m_page = {item.message, this, !isLeft()};
    m_anchorName = item.anchor.objectName;
    if (item.anchor.kind == TutorialAnchor::Kind::unknown)
        return anchorNotFound();
    m_popover = true;
    Q_EMIT changed();
}

void iPadTutorialManager::anchorNotFound() {
    Log::line("Tutorial targetted unknown thing %s", qPrintable(m_anchorName));
    finished();
}

void iPadTutorialManager::hide() {
    if (!m_popover)
        return;
    m_popover = false;
    Q_EMIT changed();
}

void iPadTutorialManager::restart() {
    setProgress(0);
    show();
}

void iPadTutorialManager::finished() {
    hide();
    Q_EMIT ended();
}
