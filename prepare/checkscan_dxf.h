#pragma once

#include "checkblocks.h"
#include "checkoutline.h"
#include "checkscan_reader.h"
#include "checktexts.h"

#include <optional>

/// What becomes of an entity.
enum class EntityKind {
    Unread, // content that the import passes over
    Block,
    Curve,
    CentredCurve, // its centre is a known point
    Insert,
    LwPolyline,
    Nothing, // draws nothing, or belongs to another entity
    Point,
    Polyline,
    Line,
    Section,
    Text,
    UnreadText,
    Vertex
};

/// The entity whose groups are read. Its texts reuse their memory.
struct DrawingEntity
{
    EntityKind kind = EntityKind::Nothing;
    qint64 line = 0;
    QString keyword;
    QString layer;
    QString name;  ///< of a block
    QString text;  ///< content of a text
    QString flags; ///< as written, because the import compares them as text
    bool hasForeignText = false;
    bool isOnSheet = false;      ///< in paper space
    bool isInOtherPlane = false; ///< has an extrusion that is not the Z axis
};

/// The polyline whose vertices are read.
struct DrawingOutline
{
    DrawingEntity entity;
    BulgeCounter bulges;
    bool hasFlaggedVertex = false; ///< a vertex whose flags close the polyline in the import
};

/// Scans the pairs of a drawing. Unlike the import it looks into blocks, counts what the import passes over and
/// continues behind a header that the import rejects.
class DrawingScan
{
public:
    DrawingScan(ScanReader &reader, const CheckOptions &options, FileFacts &facts)
        : m_reader(reader),
          m_codec(options.codec()),
          m_facts(facts),
          m_collectsTexts(options.searchPoints && options.searchObjects && options.pointFile.isEmpty())
    {
    }

    void run();

private:
    using Kind = EntityKind;
    using Entity = DrawingEntity;

    static Kind kindOf(QStringView keyword);

    bool readPair();
    bool checkHeader();
    void setHeaderFault(HeaderFault fault);

    QString placeOf(const Entity &entity) const;
    void add(Tally &tally, const Entity &entity, qint64 count = 1) const;
    void add(Trait trait, const Entity &entity) { add(m_facts.tally(trait), entity); }

    void addPlane(const Entity &entity);
    void addVertex();
    void finishOutline();
    void checkFlags(const Entity &polyline, bool hasFlaggedVertex);

    void addPoint();
    void addText();
    void addUnread();
    void finishEntity();
    void finishInBlocks();
    void finishInEntities();
    void beginEntity();
    void beginSection();

    void readGroup();
    void readVertexGroup();
    void readExtrusion();
    void readText();
    void readVariable();
    void finish();

    ScanReader &m_reader;
    QTextCodec *m_codec;
    FileFacts &m_facts;

    int m_code = -1;
    QStringView m_value;
    bool m_isBlank = false;  ///< the line of the current group code is blank
    bool m_isBinary = false; ///< the file begins with the sentinel of the binary format
    bool m_hasEnd = false;   ///< the pair that ends the drawing occurred

    QString m_section;
    QString m_variable; ///< of the header
    Entity m_entity;
    BulgedVertex m_vertex;
    bool m_hasVertex = false;
    std::optional<DrawingOutline> m_outline;
    BlockContents m_blocks;
    bool m_collectsTexts; ///< no points have occurred, without which the texts are not sorted
    DrawingTexts m_texts;
};
