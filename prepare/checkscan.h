#pragma once

#include "checkimport.h"
#include "pointsymbols.h"

#include <QMap>
#include <QString>

#include <array>

/// Properties of the raw file that a scan counts.
enum class Trait {
    BlankLine,      ///< where the import expects a group code or a vertex
    UnreadText,     ///< MTEXT, ATTRIB, TEXT of a MIF file
    Curve,          ///< splines, arcs, ellipses, circles
    Bulge,          ///< segments of polylines that are arcs
    UnreadEntity,   ///< all other content that the import skips
    PolylineFlag,   ///< closed polylines that the import reads as open because of their flags
    PolylineKind,   ///< smoothed polylines and polyhedral meshes
    Mesh,           ///< polygon meshes, which GDAL does not read either
    OtherPlane,     ///< entities whose extrusion is not the Z axis; mostly mirrored
    PaperSpace,     ///< lines and polylines of a sheet
    BlockReference, ///< references to blocks that draw something
    OpenRing,       ///< rings whose last vertex is not the first
    PlineCount,     ///< PLINE without its number of vertices, or MULTIPLE with fewer than two parts
    Collection,     ///< collections of a MIF file
    DecimalComma,   ///< coordinates that the import would read but for their comma
    NonAsciiName,   ///< names with bytes beyond ASCII
    MidEmptyLine,   ///< empty lines in place of records
    Last = MidEmptyLine
};

/// The number of cases, and the first one.
struct Tally
{
    qint64 count = 0;
    qint64 line = 0; ///< of the first case, counted from 1
    QString place;   ///< of the first case, for the user
};

/// Why the header check rejects a file.
enum class HeaderFault {
    None,
    Foreign, ///< none of the others: the file does not look like its format
    Comment,
    OtherSection,
    Binary
};

/// The result of a scan. All QString members are for the user.
struct FileFacts
{
    const Tally &tally(Trait trait) const { return tallies[static_cast<std::size_t>(trait)]; }
    Tally &tally(Trait trait) { return tallies[static_cast<std::size_t>(trait)]; }

    bool isReadable = false;
    bool isUnicode = false; ///< a byte-order mark overrides the chosen encoding
    qint64 lineCount = 0;

    HeaderFault headerFault = HeaderFault::None;
    qint64 headerLine = 0; ///< number of the faulty line, counted from 1
    QString headerText;    ///< its text, abbreviated

    std::array<Tally, static_cast<std::size_t>(Trait::Last) + 1> tallies;
    QMap<QString, qint64> unreadKinds; ///< the keywords of UnreadEntity and how often each occurs; limited
    double largestDeviation = 0;       ///< of a chord from its arc, in units of the file

    bool isTruncated = false;
    QString truncatedPlace;

    QString declaredEncoding; ///< CHARSET or $DWGCODEPAGE as written; empty: none
    QString drawingVersion;   ///< $ACADVER; empty: none
    bool namesAreUtf8 = true; ///< all names with bytes beyond ASCII are valid UTF-8
    QByteArray nonAsciiNames; ///< such names, one a line, up to a limit

    QVector<DefPoint> unsortedTexts; ///< all texts of a drawing if the import does not sort them; otherwise empty

    QString geographicPlace; ///< place of a declared coordinate system in degrees; empty: none

    QString transformPlace; ///< of a line that scales or shifts the coordinates of a MIF file; empty: none

    qint64 recordsNeeded = 0; ///< objects that have a MID record
    qint64 recordCount = 0;   ///< records in the MID file; -1: not read
};

/// Scans \a fileName, in linear time and with memory bounded by its longest line and its number of blocks. Nothing is
/// lost when the entities among \a symbols become points, and those with the handles \a fillings are skipped.
FileFacts scanFile(const QString &fileName, const CheckOptions &options, const PointSymbols &symbols,
                   const QSet<QString> &fillings);

/// The name of the MID file that the import opens for \a mifFile.
QString midFileName(const QString &mifFile);
