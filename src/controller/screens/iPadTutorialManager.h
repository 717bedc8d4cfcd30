#pragma once

#include <QObject>
#include <cstdint>
#include <string>
#include <vector>

#include "notifications/NotificationCentre.h"
#include "screens/TutorialItem.h"
#include "screens/iPadTutorialViewController.h"

class UserDefaults;

/// Leads through a tutorial, one popover after the other. How far it has come is kept in the user
/// defaults, so each page is shown once, across starts. It hides when another popover is about to
/// appear (`kPopoverNotification`). [main]
class iPadTutorialManager : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool popover READ popover NOTIFY changed)
    Q_PROPERTY(iPadTutorialViewController page READ page NOTIFY changed)
    Q_PROPERTY(QString anchorName READ anchorName NOTIFY changed)

  public:
    /// `defaults` outlives it.
    iPadTutorialManager(std::vector<TutorialItem> items, std::string progressKey,
                        UserDefaults& defaults);
    ~iPadTutorialManager() override;

    /// Index of the next page.
    std::int64_t progress() const { return m_progress; }
    /// Whether a page is shown.
    bool popover() const { return m_popover; }
    /// The page that is shown, or was last.
    const iPadTutorialViewController& page() const { return m_page; }
    /// What it points at, by its object name.
    QString anchorName() const { return m_anchorName; }

    /// The next page, or the end when there is none.
    void show();
    Q_INVOKABLE void next() { show(); }
    Q_INVOKABLE void hide();
    void popupNote() { hide(); }
    /// Hides it, and tells that it is over.
    void finished();
    /// Shows all pages once more, from the first.
    Q_INVOKABLE void restart();
    /// The window has nothing of the anchor's name: the tutorial ends.
    Q_INVOKABLE void anchorNotFound();

  Q_SIGNALS:
    void changed();
    /// The tutorial is over; whoever made the manager may let it go.
    void ended();

  private:
    bool isLeft() const { return m_progress < std::int64_t(m_items.size()); }
    void setProgress(std::int64_t progress);

    std::vector<TutorialItem> m_items;
    std::string m_progressKey;
    UserDefaults& m_defaults;
    std::int64_t m_progress;
    bool m_popover = false;
    iPadTutorialViewController m_page;
    QString m_anchorName;
    NotificationCentre::Token m_token;
};
