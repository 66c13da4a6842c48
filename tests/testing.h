#pragma once

#include "mapimport_dxf.h"
#include "mapimport_mif.h"
#include "mapimport_status.h"

#include <QFile>
#include <QRandomGenerator>
#include <QStringList>
#include <QTemporaryDir>
#include <QTextCodec>

#include <algorithm>

/// A random text of \a count characters from \a alphabet.
inline QString randomText(QRandomGenerator &random, const QString &alphabet, int count)
{
    QString text;
    for (int i = 0; i < count; ++i)
        text.append(alphabet.at(random.bounded(alphabet.size())));
    return text;
}

/// Records status messages for its lifetime. Only one may exist at a time.
class StatusRecorder
{
public:
    StatusRecorder()
    {
        recorded().clear();
        setStatusFunc([](const QString &text) { recorded().append(text); });
    }
    ~StatusRecorder() { setStatusFunc(nullptr); }
    StatusRecorder(const StatusRecorder &) = delete;
    StatusRecorder &operator=(const StatusRecorder &) = delete;

    QStringList messages() const { return recorded(); }

private:
    static QStringList &recorded()
    {
        static QStringList texts;
        return texts;
    }
};

/// \a points in the order of sortPoints(), ties by designation.
inline QVector<DefPoint> sortedByDef(QVector<DefPoint> points)
{
    std::sort(points.begin(), points.end(), [](const DefPoint &a, const DefPoint &b) {
        return lessNanLast(a, b) || (!lessNanLast(b, a) && a.def < b.def);
    });
    return points;
}

/// The known points of \a import after a run, sorted.
inline QVector<DefPoint> knownPoints(const MapImport &import)
{
    return sortedByDef(import.points);
}

/// Writes input files into a temporary folder that it owns.
class TextFixture
{
public:
    QString path(const QString &name) const { return m_dir.filePath(name); }

    /// Writes \a bytes unchanged and returns the path of the file.
    QString writeBytes(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return file.fileName();
    }

    /// Writes \a lines, each with a line feed, in the encoding \a codec. Returns the path of the file.
    QString write(const QString &name, const QStringList &lines, const char *codec = "UTF-8") const
    {
        const QString text = lines.isEmpty() ? QString() : lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
        const QTextCodec *const textCodec = QTextCodec::codecForName(codec);
        QTextCodec::ConverterState noHeader(QTextCodec::IgnoreHeader);
        return writeBytes(name, textCodec->fromUnicode(text.constData(), text.size(), &noHeader));
    }

private:
    QTemporaryDir m_dir;
};
