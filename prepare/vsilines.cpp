#include "vsilines.h"

#include <cstring>

namespace {

constexpr int chunkSize = 1 << 16;

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
    m_next = 0;
    const int before = m_buffer.size();
    m_buffer.resize(before + chunkSize);
    const std::size_t count = VSIFReadL(m_buffer.data() + before, 1, chunkSize, m_file);
    m_buffer.resize(before + static_cast<int>(count));
    return count > 0;
}

bool VsiLines::read(QByteArray &line)
{
    int end = m_buffer.indexOf('\n', m_next);
    while (end < 0 && m_buffer.size() - m_next < chunkSize) {
        if (!fill())
            break;
        end = m_buffer.indexOf('\n', m_next);
    }
    if (m_next == m_buffer.size())
        return false;
    const int next = end < 0 ? m_buffer.size() : end + 1;
    if (end < 0)
        end = next;
    line.resize(end - m_next);
    std::memcpy(line.data(), m_buffer.constData() + m_next, static_cast<std::size_t>(line.size()));
    m_next = next;
    return true;
}
