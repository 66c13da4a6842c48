#include "vsilines.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int chunkSize = 1 << 16;

bool isLineEnd(char c)
{
    return c == '\n' || c == '\r';
}

} // namespace

VsiLines::~VsiLines()
{
    if (m_file != nullptr)
        VSIFCloseL(m_file);
}

bool VsiLines::open(const QByteArray &fileName)
{
    m_file = VSIFOpenL(fileName.constData(), "rb");
    return m_file != nullptr;
}

// Reads the next chunk. Keeps the beginning of a line that the previous one did not hold completely.
bool VsiLines::fill()
{
    m_buffer.remove(0, m_next);
    m_removed += m_next;
    m_next = 0;
    const int before = m_buffer.size();
    m_buffer.resize(before + chunkSize);
    const std::size_t count = VSIFReadL(m_buffer.data() + before, 1, chunkSize, m_file);
    m_buffer.resize(before + static_cast<int>(count));
    return count > 0;
}

// Returns -1 if the buffer does not hold the end of the line.
int VsiLines::findEnd() const
{
    const char *const bytes = m_buffer.constData();
    const char *const end = std::find_if(bytes + m_next, bytes + m_buffer.size(), isLineEnd);
    return end == bytes + m_buffer.size() ? -1 : static_cast<int>(end - bytes);
}

bool VsiLines::read(QByteArray &line)
{
    int end = findEnd();
    // The end may have a second character.
    while (end < 0 ? m_buffer.size() - m_next < chunkSize : end + 1 == m_buffer.size()) {
        const bool isAtEnd = !fill();
        end = findEnd();
        if (isAtEnd)
            break;
    }
    if (m_next == m_buffer.size())
        return false;
    int next = end < 0 ? m_buffer.size() : end + 1;
    if (end >= 0 && next < m_buffer.size() && isLineEnd(m_buffer.at(next)) && m_buffer.at(next) != m_buffer.at(end))
        ++next;
    m_lineBegin = m_removed + m_next;
    line.resize((end < 0 ? next : end) - m_next);
    std::memcpy(line.data(), m_buffer.constData() + m_next, static_cast<std::size_t>(line.size()));
    m_next = next;
    return true;
}
