// Evaluates the entities of a drawing, each at its end.
//
// Functions are in data-flow order: kind, place, polyline, entity.

#include "checkscan_dxf.h"

#include <QHash>

#include <algorithm>

DrawingScan::Kind DrawingScan::kindOf(QStringView keyword)
{
    static const QHash<QString, Kind> kinds{
        {QStringLiteral("ARC"), Kind::Curve},           {QStringLiteral("ATTDEF"), Kind::Nothing},
        {QStringLiteral("ATTRIB"), Kind::UnreadText},   {QStringLiteral("BLOCK"), Kind::Block},
        {QStringLiteral("CIRCLE"), Kind::CentredCurve}, {QStringLiteral("ELLIPSE"), Kind::CentredCurve},
        {QStringLiteral("ENDBLK"), Kind::Nothing},      {QStringLiteral("ENDSEC"), Kind::Nothing},
        {QStringLiteral("EOF"), Kind::Nothing},         {QStringLiteral("HELIX"), Kind::Curve},
        {QStringLiteral("INSERT"), Kind::Insert},       {QStringLiteral("LINE"), Kind::Line},
        {QStringLiteral("MTEXT"), Kind::UnreadText},    {QStringLiteral("LWPOLYLINE"), Kind::LwPolyline},
        {QStringLiteral("POINT"), Kind::Point},         {QStringLiteral("POLYLINE"), Kind::Polyline},
        {QStringLiteral("SECTION"), Kind::Section},     {QStringLiteral("SEQEND"), Kind::Nothing},
        {QStringLiteral("SPLINE"), Kind::Curve},        {QStringLiteral("TEXT"), Kind::Text},
        {QStringLiteral("VERTEX"), Kind::Vertex},       {QStringLiteral("VIEWPORT"), Kind::Nothing},
    };
    return kinds.value(QString::fromRawData(keyword.data(), static_cast<int>(keyword.size())), Kind::Unread);
}

QString DrawingScan::placeOf(const Entity &entity) const
{
    return QStringLiteral("строка %1, слой «%2», %3")
        .arg(QString::number(entity.line), shown(entity.layer), shown(entity.keyword));
}

void DrawingScan::add(Tally &tally, const Entity &entity, qint64 count) const
{
    if (tally.count == 0) {
        tally.line = entity.line;
        tally.place = placeOf(entity);
    }
    tally.count += count;
}

// 3D polylines and meshes have world coordinates whatever their extrusion.
void DrawingScan::addPlane(const Entity &entity)
{
    constexpr int spatial = 8 | 16 | 64;
    const bool isSpatial = entity.kind == Kind::Polyline && (entity.flags.toInt() & spatial) != 0;
    if (entity.isInOtherPlane && !isSpatial)
        add(Trait::OtherPlane, entity);
}

void DrawingScan::addVertex()
{
    if (m_hasVertex && m_outline)
        m_outline->bulges.addVertex(m_vertex);
    m_hasVertex = false;
    m_vertex = {};
}

// Only the value 1 closes a POLYLINE in the import. Meshes and smoothed polylines count on their own: the import reads
// them wrong even if they are closed.
void DrawingScan::checkFlags(const Entity &polyline, bool hasFlaggedVertex)
{
    constexpr int closed = 1;
    constexpr int smoothed = 2 | 4;
    constexpr int mesh = 16;
    constexpr int polyhedral = 64;
    const int flags = polyline.flags.toInt();
    if ((flags & mesh) != 0)
        add(Trait::Mesh, polyline);
    else if ((flags & (smoothed | polyhedral)) != 0)
        add(Trait::PolylineKind, polyline);
    else if ((flags & closed) != 0 && polyline.flags != QLatin1String("1") && !hasFlaggedVertex)
        add(Trait::PolylineFlag, polyline);
}

void DrawingScan::finishOutline()
{
    if (!m_outline)
        return;
    const Entity &polyline = m_outline->entity;
    addPlane(polyline);
    if (polyline.isOnSheet)
        add(Trait::PaperSpace, polyline);
    BulgeCounter &bulges = m_outline->bulges;
    if ((polyline.flags.toInt() & 1) != 0)
        bulges.close();
    if (bulges.count() > 0)
        add(m_facts.tally(Trait::Bulge), polyline, bulges.count());
    m_facts.largestDeviation = std::max(m_facts.largestDeviation, bulges.largestDeviation());
    if (polyline.kind == Kind::Polyline)
        checkFlags(polyline, m_outline->hasFlaggedVertex);
    m_outline.reset();
}

// With known points the import sorts the texts, so they are not needed.
void DrawingScan::addPoint()
{
    m_collectsTexts = false;
    m_texts.clear();
}

// The import takes the place as a known point, but what is drawn there is lost unless it only marks the point.
void DrawingScan::addPoint(Tally &losses)
{
    addPoint();
    if (!m_symbols.contains(m_entity.line))
        add(losses, m_entity);
}

void DrawingScan::addText()
{
    addPlane(m_entity);
    if (m_entity.hasNonAsciiText)
        add(Trait::NonAsciiName, m_entity);
    if (m_collectsTexts)
        m_texts.finish(m_reader.decodedWhole(m_entity.text, m_codec));
}

// A filling adds nothing to the outline that it fills. The list of keywords is limited, because a file may invent any
// number of them.
void DrawingScan::addUnread()
{
    constexpr int maxKinds = 50;
    if (m_fillings.contains(m_entity.handle))
        return;
    add(Trait::UnreadEntity, m_entity);
    const QString keyword = shown(m_entity.keyword);
    if (m_facts.unreadKinds.size() < maxKinds || m_facts.unreadKinds.contains(keyword))
        ++m_facts.unreadKinds[keyword];
}

void DrawingScan::finishInBlocks()
{
    if (m_entity.kind == Kind::Block)
        m_blocks.begin(m_entity.name);
    else if (m_entity.kind == Kind::Insert)
        m_blocks.addReference(m_entity.name);
    else if (m_entity.kind != Kind::Nothing && m_entity.kind != Kind::Point && m_entity.kind != Kind::Section)
        m_blocks.addContent();
}

void DrawingScan::finishInEntities()
{
    switch (m_entity.kind) {
    case Kind::Curve:
        return add(Trait::Curve, m_entity);
    case Kind::CentredCurve:
        return addPoint(m_facts.tally(Trait::Curve));
    case Kind::Point:
        return addPoint();
    case Kind::UnreadText:
        return add(Trait::UnreadText, m_entity);
    case Kind::Unread:
    case Kind::Block:
        return addUnread();
    case Kind::Insert:
        return addPoint(m_blocks.insertions(m_entity.name));
    case Kind::Text:
        return addText();
    case Kind::Line:
        if (m_entity.isOnSheet)
            add(Trait::PaperSpace, m_entity);
        return;
    case Kind::Vertex:
        addVertex();
        if (m_outline && m_entity.flags == QLatin1String("1"))
            m_outline->hasFlaggedVertex = true;
        return;
    case Kind::LwPolyline:
        addVertex();
        m_outline->entity = m_entity;
        return finishOutline();
    case Kind::Polyline:
        m_outline.emplace().entity = m_entity;
        return;
    default:
        return;
    }
}

void DrawingScan::finishEntity()
{
    if (m_section == QLatin1String("BLOCKS"))
        finishInBlocks();
    else if (m_section == QLatin1String("ENTITIES"))
        finishInEntities();
}
