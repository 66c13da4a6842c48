#include "convertmiflines.h"

#include <algorithm>
#include <cstring>

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r';
}

bool isLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

const char *behindDigits(const char *begin, const char *end)
{
    return std::find_if_not(begin, end, isDigit);
}

const char *behindSign(const char *begin, const char *end)
{
    return begin != end && (*begin == '-' || *begin == '+') ? begin + 1 : begin;
}

// Fast path: nearly all numbers are plain, and conversion would take most of the time.
bool isPlainNumber(const char *begin, const char *end)
{
    const char *const digits = behindSign(begin, end);
    const char *next = behindDigits(digits, end);
    auto count = next - digits;
    if (next != end && *next == '.') {
        const char *const decimals = next + 1;
        next = behindDigits(decimals, end);
        count += next - decimals;
    }
    return count > 0 && next == end;
}

} // namespace

bool MifToken::isNumber() const
{
    bool ok = isPlainNumber(begin, end);
    if (!ok)
        bytes().toDouble(&ok);
    return ok;
}

bool MifToken::hasDecimalComma() const
{
    const char *const integer = behindSign(begin, end);
    const char *const comma = behindDigits(integer, end);
    return comma != integer && end - comma > 1 && *comma == ',' && behindDigits(comma + 1, end) == end;
}

bool MifToken::hasThousands() const
{
    constexpr int group = 3;
    const char *const integer = behindSign(begin, end);
    const char *const comma = behindDigits(integer, end);
    return end - comma == group + 1 && comma - integer <= group && *integer != '0';
}

MifLines::MifLines(const QByteArray &mif, int begin, int firstLine)
    : m_begin(mif.constData() + begin),
      m_end(mif.constData() + mif.size()),
      m_next{m_begin, firstLine},
      m_current(m_next)
{
}

bool MifLines::read()
{
    while (m_next.begin < m_end) {
        m_current = m_next;
        const char *const begin = m_current.begin;
        const auto *end = static_cast<const char *>(std::memchr(begin, '\n', static_cast<std::size_t>(m_end - begin)));
        end = end == nullptr ? m_end : end;
        m_next = {end == m_end ? m_end : end + 1, m_current.number + 1};
        m_line = {std::find_if_not(begin, end, isBlank), end};
        while (m_line.end > m_line.begin && isBlank(m_line.end[-1]))
            --m_line.end;
        if (!m_line.isEmpty()) {
            split();
            return true;
        }
    }
    return false;
}

void MifLines::split()
{
    m_tokens.clear();
    for (const char *c = m_line.begin; c != m_line.end; c = std::find_if_not(c, m_line.end, isBlank)) {
        const char *const end = std::find_if(c, m_line.end, isBlank);
        m_tokens.push_back({c, end});
        c = end;
    }
}

bool MifLines::isKeyword() const
{
    return !m_line.isEmpty() && isLetter(*m_line.begin) && !m_tokens[0].isNumber();
}

bool MifLines::hasPoints()
{
    for (const char *c = m_begin; m_hasPoints < 0 && c < m_end; ++c) {
        c = static_cast<const char *>(std::memchr(c, '.', static_cast<std::size_t>(m_end - c)));
        if (c == nullptr)
            break;
        if (c > m_begin && c + 1 < m_end && isDigit(c[-1]) && isDigit(c[1]))
            m_hasPoints = 1;
    }
    m_hasPoints = std::max(m_hasPoints, 0);
    return m_hasPoints == 1;
}
