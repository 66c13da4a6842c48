#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <cstddef>
#include <cstdint>

/// The input of one run: options, a byte each, then files.
///
/// A byte selects a choice by its distance from '0', modulo the number of choices. A line feed may end the options.
class Input
{
public:
    Input(const uint8_t *data, size_t size)
        : m_bytes(reinterpret_cast<const char *>(data), static_cast<int>(size)) // NOLINT(*-reinterpret-cast)
    {
    }

    bool atEnd() const { return m_next >= m_bytes.size(); }

    /// A number from 0 to \a count - 1; 0 at the end of the input.
    int option(int count) { return atEnd() ? 0 : static_cast<uint8_t>(m_bytes.at(m_next++) - '0') % count; }

    bool flag() { return option(2) == 1; }

    template <typename T, int count>
    const T &oneOf(const T (&choices)[count])
    {
        return choices[option(count)];
    }

    /// A short text: a digit for its length, then UTF-16, which may contain lone surrogates.
    QString text()
    {
        const int length = option(10);
        const QByteArray units = take(m_next + 2 * length);
        QString text;
        for (int i = 0; i + 1 < units.size(); i += 2)
            text += QChar(static_cast<uchar>(units.at(i)), static_cast<uchar>(units.at(i + 1)));
        return text;
    }

    /// The next \a count files, separated by lines of "==="; missing ones are empty.
    QList<QByteArray> files(int count)
    {
        if (!atEnd() && m_bytes.at(m_next) == '\n')
            ++m_next;
        QList<QByteArray> files;
        for (int i = 0; i < count; ++i) {
            const int end = m_bytes.indexOf("===\n", m_next);
            files.append(take(end < 0 ? m_bytes.size() : end));
            m_next += 4;
        }
        return files;
    }

private:
    QByteArray take(int end)
    {
        QByteArray bytes = atEnd() ? QByteArray() : m_bytes.mid(m_next, end - m_next);
        m_next = end;
        return bytes;
    }

    QByteArray m_bytes;
    int m_next = 0;
};
