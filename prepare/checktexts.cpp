#include "checktexts.h"

#include "mapimport_lines.h"

void DrawingTexts::readGroup(int code, QStringView value)
{
    bool ok = false;
    switch (code) {
    case 10:
        m_current.inserted.x = toDouble(value, ok);
        break;
    case 20:
        m_current.inserted.y = toDouble(value, ok);
        m_current.hasPlace = ok;
        break;
    case 11:
        m_current.aligned.x = toDouble(value, ok);
        break;
    case 21:
        m_current.aligned.y = toDouble(value, ok);
        m_current.hasAlignedPlace = ok;
        break;
    case 72:
    case 73:
        m_current.isAligned = m_current.isAligned || toInt(value, ok) != 0;
        break;
    default:
        break;
    }
}

void DrawingTexts::finish(const QString &content)
{
    if (!m_current.hasPlace)
        return;
    const bool usesAligned = m_current.isAligned && m_current.hasAlignedPlace;
    DefPoint text = usesAligned ? m_current.aligned : m_current.inserted;
    text.def = content;
    m_texts.append(text);
}
