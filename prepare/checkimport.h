#pragma once

#include "defpolygon.h"

#include <QString>
#include <QStringList>
#include <QVector>

class QTextCodec;

/// The options of the import that a check simulates.
struct CheckOptions
{
    QString encoding = QStringLiteral("Default"); ///< an unknown name stands for that of the locale
    QString pointFile;                            ///< empty: the checked file contains the points
    bool searchPoints = true;
    bool searchObjects = true;

    /// The codec that the import uses; never null.
    QTextCodec *codec() const;
    bool hasOwnPointFile() const { return searchPoints && !pointFile.isEmpty(); }
};

/// Formats that the import reads.
enum class Format { Unknown, Mif, Dxf };

/// The format by the suffix of \a fileName, in any case.
Format formatOf(const QString &fileName);

/// Where an import stopped.
struct Stop
{
    enum Kind { Nowhere, Header, Opening, Line, MidLine, Memory };

    Kind kind = Nowhere;
    qint64 line = 0;          ///< for Line and MidLine, counted from 1
    bool inPointFile = false; ///< in the separate file of points
};

/// What an import of a file brings.
struct ImportOutcome
{
    bool isAccepted() const { return stop.kind != Stop::Header; }

    QStringList messages; ///< messages of the import, in order
    Stop stop;            ///< of the first message that reports one
    QVector<DefPolygon> objects;
    QVector<DefPoint> knownPoints; ///< read from the file, without duplicates
    qint64 generatedNames = 0;     ///< objects whose designation the import makes up
};

/// Runs the import of \a fileName, whose suffix must be .mif or .dxf. Not reentrant.
///
/// \a lineCount, the number of lines of the file, corrects a line number that the import has counted over two passes.
ImportOutcome runImport(const QString &fileName, const CheckOptions &options, qint64 lineCount);
