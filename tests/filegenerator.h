#pragma once

#include "referenceimport.h"

#include <QPair>
#include <QRandomGenerator>
#include <QStringList>
#include <QVector>

/// An input file; its name has no folder.
struct GeneratedFile
{
    QString name;
    QByteArray bytes;
};

/// The files and options of a run; file names have no folder.
struct GeneratedRun
{
    ImportOptions options;
    QVector<GeneratedFile> files;
};

/// Which designations a run looks up, and whether points come from a separate file.
struct RunKind
{
    bool dxf = false;
    bool searchPointDefs = false;
    bool searchObjectDefs = false;
    bool ownPointFile = false;
};

/// Generates files that are mostly correct, with a few errors. The same number gives the same files on every machine,
/// so no expression may draw random numbers in an unspecified order.
class FileGenerator
{
public:
    explicit FileGenerator(quint32 number) : m_random(number) {}

    GeneratedRun run(const RunKind &kind);

private:
    using Place = QPair<double, double>;

    int below(int limit) { return m_random.bounded(limit); }
    bool chance(int percent) { return below(100) < percent; }
    QString oneOf(const QStringList &texts) { return texts[below(texts.size())]; }
    /// One of \a texts, which are separated by slashes.
    QString oneOf(const char *texts) { return oneOf(QString::fromUtf8(texts).split(QLatin1Char('/'))); }

    double coordinate();
    Place freshPlace();
    Place place();
    Place unusedPlace();
    QString number(double value);
    QString count(int value);
    /// A text that is a number in an unusual notation, a special number or no number at all.
    QString unusualNumber();
    QString def();
    QString padding();
    QByteArray encoded(const QStringList &lines);
    void stretch(QStringList &lines, int at, int end);
    void corruptBytes(QByteArray &bytes);

    void setStyle();
    void setOptions(ImportOptions &options);
    void addMif(GeneratedRun &run, const QString &name);
    void addDxf(GeneratedRun &run, const QString &name);

    QStringList mif(QStringList &records);
    QStringList mifHeader();
    void mifObject(QStringList &lines, QStringList &records);
    void mifSkipped(QStringList &lines);
    void mifRings(QStringList &lines, int count, int minSize, int closedPercent);
    QString mifVertex(const Place &at);
    QString record();
    void corruptLines(QStringList &lines, int from);

    QStringList dxf();
    void dxfSection(QStringList &lines, const QString &name, int size);
    void dxfEntity(QStringList &lines);
    void dxfPlace(QStringList &lines, const Place &at, int code = 0);
    void dxfText(QStringList &lines);
    void dxfPolyline(QStringList &lines);
    void dxfLwpolyline(QStringList &lines);
    void dxfExtraPairs(QStringList &lines);
    QVector<Place> outline();
    void corruptPairs(QStringList &lines);

    QRandomGenerator m_random;
    QVector<Place> m_places;
    QVector<Place> m_usedPlaces;
    int m_grid = 0;
    int m_size = 0;
    int m_unusualPercent = 0;
    int m_extremePercent = 0;
    int m_pointPercent = 0;
    int m_textPercent = 0;
    int m_errorPercent = 0;
    double m_offset = 0;
    QString m_delimiter;
    QString m_lineEnd;
    QByteArray m_codec;
};
