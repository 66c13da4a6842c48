#include "drawingpairs.h"

bool DrawingPairs::next()
{
    if (!m_lines.read(m_text))
        return false;
    m_code = m_text.trimmed().toInt();
    if (!m_lines.read(m_text))
        return false;
    m_line += 2;
    m_length = m_text.endsWith('\r') ? m_text.size() - 1 : m_text.size();
    m_value = m_text.trimmed();
    if (m_code == 0) {
        m_isSectionName = m_value == "SECTION";
        if (m_isSectionName || m_value == "ENDSEC")
            m_isInEntities = m_isInBlocks = false;
        return m_value != "EOF";
    }
    if (m_isSectionName && m_code == 2) {
        m_isInEntities = m_value == "ENTITIES";
        m_isInBlocks = m_value == "BLOCKS";
        m_isSectionName = false;
    }
    return true;
}
