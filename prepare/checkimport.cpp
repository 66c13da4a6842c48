#include "checkimport.h"

#include "mapimport_dxf.h"
#include "mapimport_mif.h"

#include <QFileInfo>
#include <QTextCodec>

#include <algorithm>
#include <memory>

namespace {

constexpr int firstObject = 1;

/// Receives the messages of the running import, whose callback is a plain function.
QStringList *messageList = nullptr;

void appendMessage(const QString &text)
{
    if (messageList != nullptr)
        messageList->append(text);
}

/// The state of the passes of an import.
struct Trace
{
    bool isInPointPass = false;
    QVector<DefPoint> knownPoints;
};

/// An importer that records its passes.
template <class Reader>
class TracedImport : public Reader
{
public:
    explicit TracedImport(Trace &trace) : m_trace(trace) {}

protected:
    bool loadPoints() override
    {
        m_trace.isInPointPass = true;
        return Reader::loadPoints();
    }

    // The points of the file end where the numbered vertices begin.
    bool loadPolygons() override
    {
        m_trace.isInPointPass = false;
        const int count = this->points.size();
        const bool ok = Reader::loadPolygons();
        m_trace.knownPoints = this->points.mid(0, count);
        return ok;
    }

private:
    Trace &m_trace;
};

std::unique_ptr<MapImport> makeImport(Format format, Trace &trace)
{
    if (format == Format::Dxf)
        return std::make_unique<TracedImport<DxfImport>>(trace);
    return std::make_unique<TracedImport<MifImport>>(trace);
}

void setOptions(MapImport &import, const CheckOptions &options)
{
    import.searchPointDefs = options.searchPoints;
    import.searchObjectDefs = options.searchObjects;
    import.pointFileName = options.pointFile;
    import.pointPref = QStringLiteral("н");
    import.pointStartNum = 1;
    import.objectPref = QStringLiteral(":ЗУ");
    import.objectStartNum = firstObject;
    import.setEncoding(options.encoding.toLatin1());
    import.report = appendMessage;
}

Stop::Kind stopKind(const QString &message)
{
    static const QVector<QPair<QString, Stop::Kind>> kinds{
        {QStringLiteral("не соответствует формату"), Stop::Header},
        {QStringLiteral("Ошибка открытия"), Stop::Opening},
        {QStringLiteral("Недостаточно памяти"), Stop::Memory},
        {QStringLiteral("чтения обозначения"), Stop::MidLine},
        {QStringLiteral("чтения данных"), Stop::MidLine},
    };
    const auto *const kind =
        std::find_if(kinds.begin(), kinds.end(), [&message](const auto &row) { return message.contains(row.first); });
    return kind != kinds.end() ? kind->second : Stop::Line;
}

/// The last number in \a message; 0 if there is none.
qint64 numberIn(const QString &message)
{
    qint64 number = 0;
    qint64 factor = 1;
    for (int i = message.size() - 1; i >= 0 && factor < 1000000000000; --i) {
        const QChar c = message.at(i);
        const bool isNumeral = c >= QLatin1Char('0') && c <= QLatin1Char('9');
        if (!isNumeral && factor > 1)
            break;
        if (!isNumeral)
            continue;
        number += factor * (c.unicode() - u'0');
        factor *= 10;
    }
    return number;
}

/// After a pass for the texts of a drawing the objects pass continues the line count, which is even by then.
qint64 lineInFile(qint64 line, qint64 lineCount)
{
    const qint64 pairLines = lineCount + lineCount % 2;
    return line > lineCount + 1 ? line - pairLines : line;
}

Stop stopOf(const QStringList &messages, qint64 lineCount)
{
    Stop stop;
    if (messages.isEmpty())
        return stop;
    stop.kind = stopKind(messages.first());
    if (stop.kind == Stop::MidLine)
        stop.line = numberIn(messages.first());
    if (stop.kind == Stop::Line)
        stop.line = lineInFile(numberIn(messages.first()), lineCount);
    return stop;
}

} // namespace

QTextCodec *CheckOptions::codec() const
{
    QTextCodec *const codec = QTextCodec::codecForName(encoding.toLatin1());
    return codec != nullptr ? codec : QTextCodec::codecForLocale();
}

Format formatOf(const QString &fileName)
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == QLatin1String("mif"))
        return Format::Mif;
    return suffix == QLatin1String("dxf") ? Format::Dxf : Format::Unknown;
}

ImportOutcome runImport(const QString &fileName, const CheckOptions &options, qint64 lineCount)
{
    ImportOutcome outcome;
    Trace trace;
    const std::unique_ptr<MapImport> import = makeImport(formatOf(fileName), trace);
    setOptions(*import, options);
    import->objectFileName = fileName;
    import->objects = &outcome.objects;
    messageList = &outcome.messages;
    import->importMap();
    messageList = nullptr;
    outcome.stop = stopOf(outcome.messages, lineCount);
    outcome.stop.inPointFile = trace.isInPointPass && options.hasOwnPointFile();
    outcome.knownPoints = trace.knownPoints;
    outcome.generatedNames = import->objectStartNum - firstObject;
    return outcome;
}
