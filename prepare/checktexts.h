#pragma once

#include "defpolygon.h"

#include <QString>
#include <QStringView>
#include <QVector>

/// Collects the TEXT entities of a drawing as the import does.
class DrawingTexts
{
public:
    void begin() { m_current = {}; }
    void readGroup(int code, QStringView value);
    /// Adds the text that has been read, whose content is \a content; a text that is not complete is left out.
    void finish(const QString &content);

    const QVector<DefPoint> &texts() const { return m_texts; }
    void clear() { m_texts.clear(); }

private:
    struct Current
    {
        DefPoint inserted;
        DefPoint aligned;
        bool isAligned = false;
        bool hasPlace = false;
        bool hasAlignedPlace = false;
    };

    Current m_current;
    QVector<DefPoint> m_texts;
};
