#pragma once

#include <QQuickItem>
#include <functional>
#include <utility>
#include <vector>

#include "keyboard/ControlEvents.h"

/// A text on a key, in the key's points.
struct KeyLabel {
    QString text;
    QRectF frame;
    bool highlighted = false;
};

/// One key of the keyboard. It takes no touches itself: the keyboard routes them, and the key says
/// to its targets what happened. [main]
class PianoKeyButton : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The keyboard makes its keys.")
    Q_PROPERTY(bool sharp READ sharp CONSTANT)
    Q_PROPERTY(int tag READ tag NOTIFY tagChanged)
    Q_PROPERTY(bool highlighted READ highlighted WRITE setHighlighted NOTIFY highlightedChanged)

  public:
    using Action = std::function<void(PianoKeyButton&)>;

    explicit PianoKeyButton(QQuickItem* parent = nullptr);

    /// Whether it is a black key.
    bool sharp() const { return m_sharp; }
    void setSharp(bool sharp) { m_sharp = sharp; }

    /// The key's index in the order of pitch, 0 to 87.
    int tag() const { return m_tag; }
    void setTag(int tag);

    /// Pressed or not, whoever presses it. Labels move with the key.
    bool highlighted() const { return m_highlighted; }
    void setHighlighted(bool highlighted);

    /// The names of the pictures of a key that is up, and of one that is down.
    void setPictures(const QString& up, const QString& down);
    const QString& picture() const { return m_highlighted ? m_downPicture : m_upPicture; }

    void addLabel(const QString& text, const QRectF& frame) { m_labels.push_back({text, frame}); }
    const std::vector<KeyLabel>& labels() const { return m_labels; }

    /// Calls the action for each of these events.
    void addTarget(ControlEvents events, Action action);
    void sendActions(ControlEvents event);

    /// A key out of sight is not in the scene.
    void setInView(bool inView);

  Q_SIGNALS:
    void tagChanged();
    void highlightedChanged();

  protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData*) override;

  private:
    bool m_sharp = false;
    bool m_highlighted = false;
    bool m_inView = true;
    int m_tag = 0;
    QString m_upPicture;
    QString m_downPicture;
    std::vector<KeyLabel> m_labels;
    std::vector<std::pair<ControlEvents, Action>> m_targets;
};
