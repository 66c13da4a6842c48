#pragma once

#include "vsilines.h"

#include <QByteArray>

#include <initializer_list>
#include <string_view>

/// Returns \a value as GDAL reads it, also if something follows the number, but with a decimal comma, too.
double drawingNumber(QByteArray value);

/// Returns false if \a fileName, a path of GDAL, has none of \a keywords, which are not longer than 16 characters. Much
/// faster than reading the pairs. Also returns true if the file cannot be opened.
bool mayHaveKeyword(const QByteArray &fileName, std::initializer_list<std::string_view> keywords);

/// Reads the pairs of an ASCII drawing and follows its sections and blocks.
class DrawingPairs
{
public:
    bool open(const QByteArray &fileName) { return m_lines.open(fileName); }

    /// Reads the next pair. Returns false at the end of the drawing.
    bool next();

    int code() const { return m_code; }
    /// Without the blanks around it.
    QByteArray value() const { return m_text.trimmed(); }
    double number() const { return drawingNumber(value()); }

    /// True if the pair belongs to the drawing's entities or to those of a block.
    bool isContent() const { return m_isInEntities || m_isInBlocks; }

    /// The line of the value, counted from 1, its position in bytes and its length without the line end.
    qint64 line() const { return m_line; }
    qint64 position() const { return m_lines.lineBegin(); }
    int length() const { return m_length; }

private:
    VsiLines m_lines;
    QByteArray m_text; ///< the last line
    int m_code = -1;
    qint64 m_line = 0;
    int m_length = 0;
    bool m_isSectionName = false;
    bool m_isInEntities = false;
    bool m_isInBlocks = false;
};
