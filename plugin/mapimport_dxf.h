#pragma once

#include "mapimport.h"

#include <QLatin1String>
#include <QVector>

#include <array>
#include <memory>

/// Reads an ASCII DXF drawing: designations are the texts that lie nearest.
class DxfImport : public MapImport
{
public:
    /// Adds every vertex of every object to the known points, without duplicates.
    void pointsFromPolygons();

protected:
    bool loadPoints() override;
    bool loadPolygons() override;

private:
    using Reader = bool (DxfImport::*)();
    struct Entity
    {
        QLatin1String name;
        Reader read;
    };
    using Entities = QVector<Entity>; ///< the few that a pass reads

    /// The group codes that mean something here; the coordinates come first, as they stand in Coordinates.
    enum Group { X, Y, X2, Y2, Begin, Text, Name, Flags, HorizontalAlignment, VerticalAlignment, Count, Other };
    using Coordinates = std::array<double, 4>;

    /// The groups of one TEXT; of a group that is repeated the last.
    struct TextGroups
    {
        unsigned present = 0; ///< which there are, a bit for each group
        unsigned numbers = 0; ///< of which coordinates the value is a number
        Coordinates at{};
        int alignment[2] = {0, 0};
        QString text;
    };

    static Group groupOf(unsigned tens, unsigned ones);
    bool readCode();
    bool readCodeValue();
    QStringView anyValue() const { return trimmedLine(value); } ///< of the current pair, whatever its code
    void pushBack();
    bool checkDxfFile();
    QString decodeText(const QString &s) const;

    bool readCoordinates(Coordinates &coordinates, int count);
    bool readPoint();
    bool readVertex();
    bool readVertices(bool &closed);
    bool readLine();
    bool readPolyline();
    bool readLwpolyline();
    bool readLwVertices(bool &closed);
    bool finishContour(bool closed);
    bool readText();
    bool readTextGroups(TextGroups &groups);
    void takeTextGroup(TextGroups &groups) const;

    bool loadPoint();
    bool loadLine();
    bool loadPolyline();
    bool loadLwpolyline();

    bool loadTextsOnly();
    bool loadEntities(const Entities &entities);
    bool scanSections(const Entities &entities);
    bool readEntity(const Entities &entities);
    void filterObjectDefs();
    void updatePointsDefs();
    void updateLastPolygonDef();

    const DefPoint *lastPolygonText();

    Group code = Other;      ///< of the current pair
    QStringView value;       ///< of the current pair; valid until the next is read; trimmed, unless the code is Other
    bool pushedBack = false; ///< the next readCodeValue() delivers the current pair again
    QString pushedBackValue; ///< what value points to then
    QVector<DefPoint> texts; ///< what the drawing says, and where
    std::unique_ptr<NearestPointIndex>
        textIndex; ///< over the texts during the objects pass; null when they are unsorted
};
