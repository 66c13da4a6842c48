#include "drawingpairs.h"

#include <cpl_conv.h>

double drawingNumber(QByteArray value)
{
    return CPLAtof(value.replace(',', '.').constData());
}

bool DrawingPairs::next()
{
    if (!m_lines.read(m_text))
        return false;
    m_code = static_cast<int>(std::strtol(m_text.constData(), nullptr, 10));
    if (!m_lines.read(m_text))
        return false;
    m_line += 2;
    m_length = m_text.endsWith('\r') ? m_text.size() - 1 : m_text.size();
    if (m_code == 0) {
        const QByteArray keyword = value();
        m_isSectionName = keyword == "SECTION";
        if (m_isSectionName || keyword == "ENDSEC")
            m_isInEntities = m_isInBlocks = false;
        return keyword != "EOF";
    }
    if (m_isSectionName && m_code == 2) {
        m_isInEntities = value() == "ENTITIES";
        m_isInBlocks = value() == "BLOCKS";
        m_isSectionName = false;
    }
    return true;
}
