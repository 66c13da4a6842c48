#pragma once

#include "convertmiflines.h"

#include <QByteArray>
#include <QSet>
#include <QVector>

/// A number of cases and the line of the first, counted from 1.
struct MifTally
{
    qint64 count = 0;
    int line = 0;
};

/// Rewrites the data section of a MIF file so that GDAL reads all its objects.
///
/// GDAL passes over a keyword in front of a tab, cuts a number at a decimal comma and gives up at a line or area of too
/// few vertices. An object that cannot be taken becomes one without a geometry, because it has a record in the MID
/// file.
class MifData
{
public:
    struct Counts
    {
        /// False if all objects are incomplete.
        bool isUsable() const { return objects == 0 || objects > placeholders.size() || unreadable.count == 0; }

        int objects = 0; ///< that have a record
        bool hasCurves = false;
        QSet<qint64> placeholders;   ///< numbers of the objects that are left out but keep their record, from 1
        qint64 shortLines = 0;       ///< left out
        qint64 shortAreas = 0;       ///< left out
        MifTally unreadable;         ///< objects and parts of collections that are left out because they are incomplete
        MifTally unknown;            ///< lines that belong to no object, among them objects of unknown kinds
        MifTally commas;             ///< numbers whose decimal comma has become a point
        QVector<int> unknownObjects; ///< for each object of an unknown kind, the number of objects in front of it
    };

    /// The section begins at the position \a begin of \a mif, in the line \a firstLine of the file.
    MifData(const QByteArray &mif, int begin, int firstLine);

    void rewrite();

    const QByteArray &text() const { return m_text; }
    const Counts &counts() const { return m_counts; }

private:
    void count(MifTally &tally) const;

    bool appendNumber(const MifToken &token);
    bool appendNumberWithComma(const MifToken &token);
    bool appendNumbers(std::size_t first, int count);
    bool toCount(std::size_t token, int &number) const;

    bool readCoordinates(int count);
    bool readVertices(int count);
    bool readSections(int count, int minVertices, qint64 &tooShort, int &kept);
    bool readLines();
    bool readRingCount(int &number);
    bool readRegion();
    bool readPoints();
    bool readText();
    bool readObject(const QByteArray &keyword);
    bool readPart(const QByteArray &keyword);
    bool readCollection();

    void addObject(const QByteArray &keyword);
    void addOtherLine(QByteArray &text);

    MifLines m_lines;
    QByteArray m_text;
    QByteArray m_object;   ///< text of the current object
    bool m_isKept = false; ///< the last object or part of a collection

    Counts m_counts;
};
