// Scans the pairs of a drawing. Unlike the import it looks into blocks, counts what the import passes over and
// continues behind a header that the import rejects.
//
// Functions are in data-flow order: pair, header, polyline, entity, section, file.

#include "checkblocks.h"
#include "checkoutline.h"
#include "checkscan_reader.h"

#include <QHash>

#include <algorithm>
#include <optional>

namespace {

constexpr QLatin1String binarySentinel("AutoCAD Binary DXF");

enum class Kind {
    Unread, // content that the import passes over
    Block,
    Curve,
    Insert,
    LwPolyline,
    Nothing, // draws nothing, or belongs to another entity
    Polyline,
    Read, // is read completely
    Section,
    Text,
    UnreadText,
    Vertex
};

Kind kindOf(QStringView keyword)
{
    static const QHash<QString, Kind> kinds{
        {QStringLiteral("ARC"), Kind::Curve},         {QStringLiteral("ATTDEF"), Kind::Nothing},
        {QStringLiteral("ATTRIB"), Kind::UnreadText}, {QStringLiteral("BLOCK"), Kind::Block},
        {QStringLiteral("CIRCLE"), Kind::Curve},      {QStringLiteral("ELLIPSE"), Kind::Curve},
        {QStringLiteral("ENDBLK"), Kind::Nothing},    {QStringLiteral("ENDSEC"), Kind::Nothing},
        {QStringLiteral("EOF"), Kind::Nothing},       {QStringLiteral("HELIX"), Kind::Curve},
        {QStringLiteral("INSERT"), Kind::Insert},     {QStringLiteral("LINE"), Kind::Read},
        {QStringLiteral("MTEXT"), Kind::UnreadText},  {QStringLiteral("LWPOLYLINE"), Kind::LwPolyline},
        {QStringLiteral("POINT"), Kind::Nothing},     {QStringLiteral("POLYLINE"), Kind::Polyline},
        {QStringLiteral("SECTION"), Kind::Section},   {QStringLiteral("SEQEND"), Kind::Nothing},
        {QStringLiteral("SPLINE"), Kind::Curve},      {QStringLiteral("TEXT"), Kind::Text},
        {QStringLiteral("VERTEX"), Kind::Vertex},     {QStringLiteral("VIEWPORT"), Kind::Nothing},
    };
    return kinds.value(QString::fromRawData(keyword.data(), static_cast<int>(keyword.size())), Kind::Unread);
}

/// A plain group code; -1 for anything else. Like the import it does not take 010 for 10.
int codeOf(QStringView line)
{
    if (line.isEmpty() || line.size() > 4 || (line.size() > 1 && line[0] == QLatin1Char('0')))
        return -1;
    int code = 0;
    for (const QChar c : line) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return -1;
        code = 10 * code + (c.unicode() - u'0');
    }
    return code;
}

/// Copies \a from into the memory that \a to already has.
void assign(QString &to, QStringView from)
{
    to.setUnicode(from.data(), static_cast<int>(from.size()));
}

class DxfScan
{
public:
    DxfScan(ScanReader &reader, const CheckOptions &options, FileFacts &facts)
        : m_reader(reader),
          m_codec(options.codec()),
          m_facts(facts)
    {
    }

    void run();

private:
    struct Entity
    {
        Kind kind = Kind::Nothing;
        qint64 line = 0;
        QString keyword;
        QString layer;
        QString name;  ///< of a block
        QString flags; ///< as written, because the import compares them as text
        bool hasForeignText = false;
    };

    /// The polyline whose vertices are read.
    struct Outline
    {
        Entity entity;
        BulgeCounter bulges;
        bool hasFlaggedVertex = false; ///< a vertex whose flags close the polyline in the import
    };

    bool readPair();
    bool checkHeader();
    void setHeaderFault(HeaderFault fault);

    QString placeOf(const Entity &entity) const;
    void add(Tally &tally, const Entity &entity, qint64 count = 1) const;
    void add(Trait trait, const Entity &entity) { add(m_facts.tally(trait), entity); }

    void addVertex();
    void finishOutline();
    void checkFlags(const Entity &polyline, bool hasFlaggedVertex);

    void addUnread();
    void finishEntity();
    void finishInBlocks();
    void finishInEntities();
    void beginEntity();
    void beginSection();

    void readGroup();
    void readVertexGroup();
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
    std::optional<Outline> m_outline;
    BlockContents m_blocks;
};

// Returns false at the end of the file and at a blank line in place of a group code.
bool DxfScan::readPair()
{
    if (!m_reader.readLine())
        return false;
    m_isBlank = m_reader.line().isEmpty();
    m_isBinary = m_reader.line().startsWith(binarySentinel);
    m_code = codeOf(m_reader.line());
    if (m_isBlank || m_isBinary || !m_reader.readLine())
        return false;
    m_value = m_reader.line();
    return true;
}

void DxfScan::setHeaderFault(HeaderFault fault)
{
    m_facts.headerFault = fault;
    m_facts.headerLine = m_reader.lineNumber();
    m_facts.headerText = m_reader.decoded(m_reader.line(), m_codec);
}

// Returns false if the file is no drawing in pairs.
bool DxfScan::checkHeader()
{
    bool ok = readPair();
    if (ok && m_code == 999) {
        setHeaderFault(HeaderFault::Comment);
        m_facts.headerLine = 1;
    }
    while (ok && m_code == 999)
        ok = readPair();
    if (!ok || m_code != 0 || m_value != QLatin1String("SECTION") || !readPair() || m_code != 2) {
        setHeaderFault(m_isBinary ? HeaderFault::Binary : HeaderFault::Foreign);
        return false;
    }
    if (m_facts.headerFault == HeaderFault::None && m_value != QLatin1String("HEADER"))
        setHeaderFault(HeaderFault::OtherSection);
    assign(m_section, m_value);
    return true;
}

QString DxfScan::placeOf(const Entity &entity) const
{
    return QStringLiteral("строка %1, слой «%2», %3")
        .arg(QString::number(entity.line), m_reader.decoded(entity.layer, m_codec),
             m_reader.decoded(entity.keyword, m_codec));
}

void DxfScan::add(Tally &tally, const Entity &entity, qint64 count) const
{
    if (tally.count == 0) {
        tally.line = entity.line;
        tally.place = placeOf(entity);
    }
    tally.count += count;
}

void DxfScan::addVertex()
{
    if (m_hasVertex && m_outline)
        m_outline->bulges.addVertex(m_vertex);
    m_hasVertex = false;
    m_vertex = {};
}

// Only the value 1 closes a POLYLINE in the import. A mesh or a smoothed polyline is a different matter.
void DxfScan::checkFlags(const Entity &polyline, bool hasFlaggedVertex)
{
    constexpr int closed = 1;
    constexpr int smoothed = 2 | 4;
    constexpr int mesh = 16 | 64;
    const int flags = polyline.flags.toInt();
    if ((flags & (smoothed | mesh)) != 0)
        add(Trait::PolylineKind, polyline);
    else if ((flags & closed) != 0 && polyline.flags != QLatin1String("1") && !hasFlaggedVertex)
        add(Trait::PolylineFlag, polyline);
}

void DxfScan::finishOutline()
{
    if (!m_outline)
        return;
    const Entity &polyline = m_outline->entity;
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

// The list of keywords is limited, because a file may invent any number of them.
void DxfScan::addUnread()
{
    constexpr int maxKinds = 50;
    add(Trait::UnreadEntity, m_entity);
    const QString keyword = m_reader.decoded(m_entity.keyword, m_codec);
    if (m_facts.unreadKinds.size() < maxKinds || m_facts.unreadKinds.contains(keyword))
        ++m_facts.unreadKinds[keyword];
}

void DxfScan::finishInBlocks()
{
    if (m_entity.kind == Kind::Block)
        m_blocks.begin(m_entity.name);
    else if (m_entity.kind == Kind::Insert)
        m_blocks.addReference(m_entity.name);
    else if (m_entity.kind != Kind::Nothing && m_entity.kind != Kind::Section)
        m_blocks.addContent();
}

void DxfScan::finishInEntities()
{
    switch (m_entity.kind) {
    case Kind::Curve:
        return add(Trait::Curve, m_entity);
    case Kind::UnreadText:
        return add(Trait::UnreadText, m_entity);
    case Kind::Unread:
    case Kind::Block:
        return addUnread();
    case Kind::Insert:
        return add(m_blocks.insertions(m_entity.name), m_entity);
    case Kind::Text:
        if (m_entity.hasForeignText)
            add(Trait::ForeignName, m_entity);
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

void DxfScan::finishEntity()
{
    if (m_section == QLatin1String("BLOCKS"))
        finishInBlocks();
    else if (m_section == QLatin1String("ENTITIES"))
        finishInEntities();
}

// The texts of the entity reuse their memory.
void DxfScan::beginEntity()
{
    finishEntity();
    m_entity.kind = kindOf(m_value);
    if (m_entity.kind != Kind::Vertex)
        finishOutline();
    if (m_entity.kind == Kind::LwPolyline)
        m_outline.emplace();
    m_entity.line = m_reader.lineNumber();
    assign(m_entity.keyword, m_value);
    assign(m_entity.layer, {});
    assign(m_entity.name, {});
    assign(m_entity.flags, {});
    m_entity.hasForeignText = false;
    m_hasEnd = m_value == QLatin1String("EOF");
    if (m_entity.kind == Kind::Section)
        beginSection();
}

// Like the import takes the next value for the name, whatever its group code is.
void DxfScan::beginSection()
{
    m_entity.kind = Kind::Nothing;
    if (readPair())
        assign(m_section, m_value);
}

void DxfScan::readVertexGroup()
{
    bool ok = false;
    if (m_code == 10) {
        addVertex();
        m_hasVertex = true;
        m_vertex.x = toDouble(m_value, ok);
    } else if (m_code == 20) {
        m_vertex.y = toDouble(m_value, ok);
    } else if (m_code == 42) {
        m_vertex.bulge = toDouble(m_value, ok);
    }
}

void DxfScan::readText()
{
    m_entity.hasForeignText = isForeign(m_value);
    if (m_entity.hasForeignText && m_section == QLatin1String("ENTITIES"))
        m_facts.namesAreUtf8 = m_facts.namesAreUtf8 && isUtf8(m_value);
}

void DxfScan::readVariable()
{
    if (m_code == 9)
        assign(m_variable, m_value);
    else if (m_code == 3 && m_variable == QLatin1String("$DWGCODEPAGE"))
        m_facts.declaredEncoding = m_value.toString();
    else if (m_code == 1 && m_variable == QLatin1String("$ACADVER"))
        m_facts.drawingVersion = m_value.toString();
}

void DxfScan::readGroup()
{
    if (m_section == QLatin1String("HEADER"))
        return readVariable();
    if (m_code == 8)
        assign(m_entity.layer, m_value);
    else if (m_code == 2)
        assign(m_entity.name, m_value);
    else if (m_code == 70)
        assign(m_entity.flags, m_value);
    else if (m_code == 1 && m_entity.kind == Kind::Text)
        readText();
    else if (m_entity.kind == Kind::LwPolyline || m_entity.kind == Kind::Vertex)
        readVertexGroup();
}

void DxfScan::finish()
{
    finishEntity();
    finishOutline();
    m_facts.tally(Trait::BlockReference) = m_blocks.drawingInsertions();
    const qint64 line = m_reader.lineNumber();
    if (m_isBlank)
        m_facts.tally(Trait::BlankLine) = {1, line, QStringLiteral("строка %1").arg(line)};
    m_facts.isTruncated = !m_isBlank && !m_hasEnd;
    m_facts.truncatedPlace = QStringLiteral("строка %1").arg(line);
}

void DxfScan::run()
{
    if (!checkHeader())
        return;
    while (readPair()) {
        if (m_code == 0)
            beginEntity();
        else
            readGroup();
    }
    finish();
}

} // namespace

void scanDxf(ScanReader &reader, const CheckOptions &options, FileFacts &facts)
{
    DxfScan(reader, options, facts).run();
}
