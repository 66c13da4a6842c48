#pragma once

#include <QByteArray>
#include <QPair>
#include <QString>
#include <QVector>

/// The companion program's report of a file that it prepared.
struct Conversion
{
    using Counts = QVector<QPair<QString, qint64>>; ///< kinds of content and the number of each

    QString output;         ///< the prepared MIF file
    QString encoding;       ///< of the output
    QString sourceEncoding; ///< empty: not known, or the source is ASCII
    qint64 objects = 0;
    qint64 contours = 0;
    qint64 vertices = 0;
    qint64 points = 0;
    Counts leftOut;  ///< content that the output lacks
    Counts notes;    ///< content that was taken, but changed, and other remarks
    QString warning; ///< first warning of the library that read the source; empty: none

    bool isComplete() const { return leftOut.isEmpty(); }
};

/// Reads the report \a json. Returns false if \a json is not a report.
bool readConversion(const QByteArray &json, Conversion &conversion);

/// What the user should know before the import: the content left out and the notes that mean a loss, a line for each of
/// at most \a maxKinds kinds. Empty if there is nothing.
QString lossText(const Conversion &conversion, int maxKinds);

/// The whole report for the user.
QString conversionText(const Conversion &conversion);
