// The reports as a self-contained page.

#include "printable.h"
#include "report.h"

namespace {

constexpr auto head = R"(<!DOCTYPE html>
<html lang="ru">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>Проверка файлов перед импортом</title>
<style>
body{font:16px/1.4 sans-serif;color:#1b2a41;margin:1.5em}
h2{overflow-wrap:anywhere}
section{border-top:1px solid #bbb;padding:1em 0}
.file{display:flex;flex-wrap:wrap;gap:1.5em}
.picture{flex:1 1 26em;min-width:0;max-width:50em}
.findings{flex:1 1 26em;min-width:0}
svg{width:100%;max-height:80vh;background:#fafafa;border:1px solid #ddd}
.error{border-left:5px solid #d81e05}
.warning{border-left:5px solid #e8a317}
.note{border-left:5px solid #999}
.finding{padding-left:.8em;margin:1em 0}
.finding p{margin:.2em 0}
.findings p{overflow-wrap:anywhere}
.dark{color:#1b2a41;font-weight:bold}
.red{color:#d81e05;font-weight:bold}
pre,code{background:#f0f0f0;overflow-x:auto}
.command{white-space:pre-wrap;overflow-wrap:anywhere}
</style>
</head>
<body>
<h1>Проверка файлов перед импортом</h1>
<p>На рисунках: <span class="dark">тёмное загрузится</span>, <span class="red">красное будет потеряно</span>.</p>
)";

QString severityClass(Severity severity)
{
    if (severity == Severity::Error)
        return QStringLiteral("error");
    return severity == Severity::Warning ? QStringLiteral("warning") : QStringLiteral("note");
}

QString paragraph(const QString &text)
{
    return QStringLiteral("<p>") + text.toHtmlEscaped() + QStringLiteral("</p>\n");
}

QString findingBlock(const Finding &finding)
{
    const QString count = QStringLiteral("Случаев: %1").arg(finding.count);
    return QStringLiteral("<div class=\"finding ") + severityClass(finding.severity) + QStringLiteral("\">\n<p><b>") +
           severityName(finding.severity) + QStringLiteral(".</b> ") + finding.text.toHtmlEscaped() +
           QStringLiteral("</p>\n") +
           paragraph(finding.place.isEmpty() ? count : count + QStringLiteral(", первый: ") + finding.place) +
           QStringLiteral("<p><b>Что делать:</b> ") + finding.cure.toHtmlEscaped() + QStringLiteral("</p>\n</div>\n");
}

QString findingsBlock(const FileReport &report)
{
    QString text = QStringLiteral("<div class=\"findings\">\n<p><b>") + verdictText(report).toHtmlEscaped() +
                   QStringLiteral("</b></p>\n");
    const QStringList numbers =
        (numbersText(report) + optionsText(report)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : numbers)
        text += paragraph(line);
    for (const Finding &finding : report.findings)
        text += findingBlock(finding);
    for (const QString &message : report.messages)
        text += paragraph(QStringLiteral("Сообщение импорта: ") + printable(message));
    const QString command = convertCommand(report);
    if (!command.isEmpty())
        text += QStringLiteral("<p>Подготовить файл к импорту:</p>\n<pre class=\"command\">") +
                command.toHtmlEscaped() + QStringLiteral("</pre>\n");
    return text + QStringLiteral("</div>\n");
}

QByteArray pictureBlock(const FileReport &report)
{
    if (report.isPictureOmitted)
        return QByteArray("<div class=\"picture\"><p>Рисунок опущен: страница стала бы слишком большой.</p></div>\n");
    return report.picture.isEmpty() ? QByteArray() : "<div class=\"picture\">\n" + report.picture + "</div>\n";
}

} // namespace

QByteArray reportPage(const QVector<FileReport> &reports)
{
    QByteArray page = head;
    if (reports.size() > 1)
        page += "<pre>" + totalsText(reports).toHtmlEscaped().toUtf8() + "</pre>\n";
    for (const FileReport &report : reports) {
        page += "<section>\n<h2>" + displayName(report).toHtmlEscaped().toUtf8() + "</h2>\n<div class=\"file\">\n";
        page += pictureBlock(report);
        page += findingsBlock(report).toUtf8() + "</div>\n</section>\n";
    }
    return page + "</body>\n</html>\n";
}
