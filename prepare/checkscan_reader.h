#pragma once

#include "checkscan.h"
#include "mapimport_lines.h"

#include <QFile>

/// Reads the lines of a file as one character per byte (Latin-1), so that the bytes of names remain known. A file with
/// a byte-order mark is decoded.
class ScanReader
{
public:
    /// Returns false if \a fileName is no readable regular file.
    bool open(const QString &fileName);

    /// Reads the next line. Returns false at the end of the file.
    bool readLine();

    /// The current line, trimmed. The view stays valid while one more line is read.
    QStringView line() const { return m_line; }
    qint64 lineNumber() const { return m_lineNumber; }
    bool isUnicode() const { return m_isUnicode; }

    /// Reads the remaining lines. Returns the number of lines in the file.
    qint64 countLines();

    /// \a text of the file decoded by \a codec.
    QString decodedWhole(QStringView text, QTextCodec *codec) const;
    /// The same for the user: abbreviated and as far as possible readable, whatever encoding is \a chosen. \a declared
    /// is that of the header, or null.
    QString shown(QStringView text, QTextCodec *chosen, QTextCodec *declared) const;

private:
    QFile m_file;
    LineReader m_stream;
    QStringView m_line;
    qint64 m_lineNumber = 0;
    bool m_isUnicode = false;
};

/// True if a character of \a text stands for a byte beyond ASCII.
bool isNonAscii(QStringView text);

/// True if \a text is a number with a decimal comma.
bool hasDecimalComma(QStringView text);

/// Records \a name, which is not ASCII, as evidence of the encoding.
void addNonAsciiName(QStringView name, FileFacts &facts);

void scanDxf(ScanReader &reader, const CheckOptions &options, const PointSymbols &symbols,
             const QSet<QString> &fillings, FileFacts &facts);
void scanMif(ScanReader &reader, const QString &fileName, const CheckOptions &options, FileFacts &facts);
