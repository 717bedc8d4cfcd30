#include "screens/iPadTutorialViewController.h"

#include <QCoreApplication>

#include "screens/iPadTutorialManager.h"

QString iPadTutorialViewController::title() const {
    return QCoreApplication::translate("Tutorial", "Tutorial");
}

QString iPadTutorialViewController::buttonTitle() const {
    return m_isLast ? QCoreApplication::translate("Tutorial", "Done")
                    : QCoreApplication::translate("Tutorial", "Next");
}

void iPadTutorialViewController::next() const {
    if (m_manager)
        m_manager->next();
}
