#pragma once

#include <QByteArray>

#include <vector>

/// A word, as a part of a text that outlives it.
struct MifToken
{
    const char *begin = nullptr;
    const char *end = nullptr;

    bool isEmpty() const { return begin == end; }
    QByteArray bytes() const { return {begin, static_cast<int>(end - begin)}; }
    QByteArray upper() const { return bytes().toUpper(); }
    bool isNumber() const;
    /// True if it is a number with a decimal comma in place of a point.
    bool hasDecimalComma() const;
    /// True if such a comma can also separate thousands.
    bool hasThousands() const;
};

/// Reads the lines of the data section of a MIF file. Blank lines mean nothing, not even in an object.
class MifLines
{
public:
    /// The section begins at the position \a begin of \a mif, which must outlive the lines, in the line \a firstLine.
    MifLines(const QByteArray &mif, int begin, int firstLine);

    /// Reads the next line. Returns false at the end; then the current line is blank or the last one.
    bool read();
    /// The next line to read is the current one again.
    void unread() { m_next = m_current; }

    const std::vector<MifToken> &tokens() const { return m_tokens; }
    const MifToken &line() const { return m_line; } ///< trimmed
    int number() const { return m_current.number; } ///< counted from 1
    /// True if the line begins with a word. A vertex may be "nan", too.
    bool isKeyword() const;

    /// A place between two lines.
    struct Position
    {
        const char *begin = nullptr;
        int number = 0; ///< of the line that begins there
    };
    Position position() const { return m_next; }
    void setPosition(const Position &position) { m_next = position; }

    /// True if the section has numbers with a decimal point.
    bool hasPoints();

private:
    void split();

    const char *m_begin;
    const char *m_end;
    Position m_next;
    Position m_current;
    MifToken m_line;
    std::vector<MifToken> m_tokens;
    int m_hasPoints = -1; ///< -1: not known yet
};
