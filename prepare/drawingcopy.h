#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <vector>

/// A part of a file to be replaced.
struct DrawingEdit
{
    qint64 position = 0; ///< in bytes
    qint64 length = 0;
    QByteArray text;
    qint64 line = 0;      ///< at which it begins, counted from 1
    qint64 lineCount = 0; ///< complete lines that are replaced by those of the text; 0: a part of one line
};

/// Writes a copy of \a fileName with \a edits, which are in its order, to \a copyName. Both are paths of GDAL.
bool copyWithEdits(const QByteArray &fileName, const QByteArray &copyName, const std::vector<DrawingEdit> &edits);

/// Lines of a copy that replace lines of the file. All are counted from 1.
struct ReplacedLines
{
    qint64 line = 0; ///< of the copy
    qint64 count = 0;
    qint64 lineBefore = 0; ///< of the file
    qint64 countBefore = 0;
};

/// Returns what \a edits change in the numbers of lines.
std::vector<ReplacedLines> replacedLines(const std::vector<DrawingEdit> &edits);

/// Returns the line of the file for \a line of the copy.
qint64 lineBeforeEdits(qint64 line, const std::vector<ReplacedLines> &replaced);
