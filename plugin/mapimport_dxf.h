#pragma once

#include "mapimport.h"

#include <QLatin1String>
#include <QVector>

/// Reads an ASCII DXF drawing. Points and objects are named by the nearest texts.
class DxfImport : public MapImport
{
public:
    /// Adds all vertices of all objects to the known points, without duplicates. Published but unused here.
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
    using Entities = QVector<Entity>; ///< the entities that a pass reads

    /// Group codes that are read, as bits, so that a set of groups is a mask.
    enum Group : unsigned {
        Other = 0,
        X = 1U << 0U,
        Y = 1U << 1U,
        X2 = 1U << 2U,
        Y2 = 1U << 3U,
        Begin = 1U << 4U,
        Text = 1U << 5U,
        Name = 1U << 6U,
        Flags = 1U << 7U,
        HorizontalAlignment = 1U << 8U,
        VerticalAlignment = 1U << 9U,
        Count = 1U << 10U
    };

    struct Coordinates
    {
        /// The coordinate with this group code; null for any other group.
        double *find(Group group);

        double x = 0;
        double y = 0;
        double x2 = 0;
        double y2 = 0;
    };

    /// The groups of one TEXT; the last value of a repeated group counts.
    struct TextGroups
    {
        unsigned present = 0; ///< mask of the groups that occurred
        unsigned numeric = 0; ///< mask of the groups whose last value is a number
        Coordinates position;
        bool isAligned() const { return horizontal != 0 || vertical != 0; }

        int horizontal = 0;
        int vertical = 0;
        QString text;
    };

    static Group groupOf(QStringView code);
    bool readCodeValue();
    void pushBack();
    bool checkDxfFile();
    QString decodeText(const QString &s) const;

    bool readCoordinates(Coordinates &at, unsigned wanted);
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
    void storeTextGroup(TextGroups &groups) const;

    bool loadPoint();
    template <Reader read>
    bool loadObject();

    bool loadTextsOnly();
    bool loadEntities(const Entities &entities);
    bool scanSections(const Entities &entities);
    bool readEntity(const Entities &entities);
    void filterObjectDefs();
    void updatePointsDefs();
    void updateLastPolygonDef();

    Group code = Other;          ///< of the current pair
    QStringView value;           ///< of the current pair, trimmed; valid until the next pair is read
    bool pushedBack = false;     ///< the next readCodeValue() delivers the current pair again
    QString pushedBackValue;     ///< owns the value of a pushed-back pair
    QVector<DefPoint> texts;     ///< texts of the drawing with their positions
    NearestPointIndex textIndex; ///< of the texts that can name objects
};
