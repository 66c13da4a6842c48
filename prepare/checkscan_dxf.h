#pragma once

#include "checkblocks.h"
#include "checkoutline.h"
#include "checkscan_reader.h"
#include "checktexts.h"

#include <optional>

/// How the scan treats an entity.
enum class EntityKind {
    Unread, ///< content that the import skips
    Block,
    Curve,
    CentredCurve, ///< its centre is a known point
    Insert,
    LwPolyline,
    Nothing, ///< draws nothing, or belongs to another entity
    Point,
    Polyline,
    Line,
    Section,
    Text,
    UnreadText,
    Vertex
};

/// The current entity. There is one object for all entities, because its strings keep their memory.
struct DrawingEntity
{
    EntityKind kind = EntityKind::Nothing;
    qint64 line = 0;
    QString keyword;
    QString layer;
    QString name;   ///< of a block
    QString handle; ///< only of content that the import skips
    QString text;   ///< content of a text
    QString flags;  ///< as written, because the import compares them as text
    bool hasNonAsciiText = false;
    bool isOnSheet = false;      ///< in paper space
    bool isInOtherPlane = false; ///< its extrusion is not the Z axis
};

/// The current polyline.
struct DrawingOutline
{
    DrawingEntity entity;
    BulgeCounter bulges;
    bool hasFlaggedVertex = false; ///< a vertex whose flags close the polyline in the import
};

/// Scans the pairs of a drawing. Unlike the import it looks into blocks, counts what the import skips, and continues
/// after a header that the import rejects.
class DrawingScan
{
public:
    DrawingScan(ScanReader &reader, const CheckOptions &options, const PointSymbols &symbols,
                const QSet<QString> &fillings, FileFacts &facts)
        : m_reader(reader),
          m_codec(options.codec()),
          m_symbols(symbols),
          m_fillings(fillings),
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

    QString shown(QStringView text) const { return m_reader.shown(text, m_codec, m_declaredCodec); }
    QString placeOf(const Entity &entity) const;
    void add(Tally &tally, const Entity &entity, qint64 count = 1) const;
    void add(Trait trait, const Entity &entity) { add(m_facts.tally(trait), entity); }

    void addPlane(const Entity &entity);
    void addVertex();
    void finishOutline();
    void checkFlags(const Entity &polyline, bool hasFlaggedVertex);

    void addPoint();
    void addPoint(Tally &losses);
    void addText();
    void addUnread();
    void finishEntity();
    void finishInBlocks();
    void finishInEntities();
    void beginEntity();
    void beginSection();

    void checkPlace();
    void readGroup();
    void readVertexGroup();
    void readExtrusion();
    void readText();
    void setDeclaredEncoding();
    void readVariable();
    void finish();

    ScanReader &m_reader;
    QTextCodec *m_codec;
    QTextCodec *m_declaredCodec = nullptr; ///< of the header; null if it names none
    const PointSymbols &m_symbols;
    const QSet<QString> &m_fillings;
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
    bool m_collectsTexts; ///< until a point occurs: with points the import sorts the texts
    DrawingTexts m_texts;
};
