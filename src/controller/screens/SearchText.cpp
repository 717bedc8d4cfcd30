#include "screens/SearchText.h"

QString SearchText::folded(const QString& text) {
    const QString parts = text.normalized(QString::NormalizationForm_KD);
    QString plain;
    for (const QChar c : parts) {
        if (c.category() != QChar::Mark_NonSpacing)
            plain += c;
    }
    return plain.toCaseFolded();
}
