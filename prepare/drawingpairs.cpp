#include "drawingpairs.h"

#include <cpl_conv.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

double drawingNumber(QByteArray value)
{
    return CPLAtof(value.replace(',', '.').constData());
}

bool mayHaveKeyword(const QByteArray &fileName, std::initializer_list<std::string_view> keywords)
{
    constexpr std::size_t longest = 16;
    VSILFILE *const file = VSIFOpenL(fileName.constData(), "rb");
    if (file == nullptr)
        return true;
    std::vector<char> buffer(1 << 20);
    std::size_t kept = 0; // the end of the previous bytes, which may hold the beginning of a keyword
    std::size_t size = 1;
    bool found = false;
    while (size > 0 && !found) {
        size = VSIFReadL(buffer.data() + kept, 1, buffer.size() - kept, file);
        const std::string_view bytes(buffer.data(), kept + size);
        found = std::any_of(keywords.begin(), keywords.end(), [bytes](std::string_view keyword) {
            return bytes.find(keyword) != std::string_view::npos;
        });
        kept = std::min(bytes.size(), longest);
        std::copy(bytes.end() - static_cast<std::ptrdiff_t>(kept), bytes.end(), buffer.begin());
    }
    VSIFCloseL(file);
    return found;
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
