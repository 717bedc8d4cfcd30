#pragma once

#include <QSGImageNode>
#include <QSGNode>
#include <memory>
#include <vector>

#include "keyboard/KeyTextures.h"

/// What is drawn of one key: its picture and its labels, each a node of its own, which nothing
/// touches until the key itself changes. [render, while main waits]
class PianoKeyNode : public QSGNode {
  public:
    PianoKeyNode(QQuickWindow& window, std::size_t labels);

    void show(const PianoKeyButton& key);

  private:
    QSGImageNode* addImage(QQuickWindow& window);

    std::shared_ptr<KeyTextures> m_textures;
    QSGImageNode* m_picture;
    std::vector<QSGImageNode*> m_labels;
};
