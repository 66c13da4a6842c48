#pragma once

#include <QByteArray>
#include <QPair>
#include <QString>
#include <QVector>

/// What the companion program reports about a file that it prepared.
struct Conversion
{
    using Counts = QVector<QPair<QString, qint64>>; ///< kinds of content and how many of each

    QString output;   ///< the prepared MIF file
    QString encoding; ///< of the output
    QString sourceEncoding;
    qint64 objects = 0;
    qint64 contours = 0;
    qint64 vertices = 0;
    qint64 points = 0;
    Counts leftOut;
    Counts notes;
    QString warning; ///< the first one of the library that read the source

    bool isComplete() const { return leftOut.isEmpty(); }
};

/// Reads the report \a json. Returns false if it is none.
bool readConversion(const QByteArray &json, Conversion &conversion);

/// What the user should know before the import, a line for each of at most \a maxKinds kinds: what was left out, and
/// the notes that mean a loss. Empty if there is nothing.
QString lossText(const Conversion &conversion, int maxKinds);

/// The whole report for the user.
QString conversionText(const Conversion &conversion);
