#pragma once

#include "referenceimport.h"

#include <QPair>
#include <QRandomGenerator>
#include <QStringList>
#include <QVector>

/// One file of a run, as bytes.
struct GeneratedFile
{
    QString name;
    QByteArray bytes;
};

/// The files of a run and what the importer is told; the names of the files are without folder.
struct GeneratedRun
{
    ImportOptions options;
    QVector<GeneratedFile> files;
};

/// Which designations a run looks for, and whether the points have a file of their own.
struct RunKind
{
    bool dxf = false;
    bool searchPointDefs = false;
    bool searchObjectDefs = false;
    bool ownPointFile = false;
};

/// Makes files that are mostly right, with a few slips; one number gives the same files on every machine.
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

    double coordinate();
    Place freshPlace();
    Place place();
    Place placeOfItsOwn();
    QString number(double value);
    QString count(int value);
    QString oddNumber();
    QString extremeNumber();
    QString def();
    QString padding();
    QByteArray encoded(const QStringList &lines);
    void stretch(QStringList &lines, int at, int end);
    void spoilBytes(QByteArray &bytes);

    void setStyles();
    void setOptions(ImportOptions &options);
    void addMif(GeneratedRun &run, const QString &name);
    void addDxf(GeneratedRun &run, const QString &name);

    QStringList mif(QStringList &records);
    QStringList mifHeader();
    void mifObject(QStringList &lines, QStringList &records);
    void mifSkipped(QStringList &lines);
    void mifRing(QStringList &lines, int size, bool closed);
    QString mifVertex(const Place &at, const QString &before);
    QString record();
    void spoilLines(QStringList &lines, int from);

    QStringList dxf();
    void dxfEntities(QStringList &lines, int size);
    void dxfEntity(QStringList &lines);
    void dxfOther(QStringList &lines);
    void dxfPlace(QStringList &lines, const Place &at, int code);
    void dxfText(QStringList &lines);
    void dxfPolyline(QStringList &lines);
    void dxfLwpolyline(QStringList &lines);
    void dxfNoise(QStringList &lines);
    QVector<Place> outline();
    void spoilPairs(QStringList &lines);
    static void add(QStringList &lines, const QString &code, const QString &value);

    QRandomGenerator m_random;
    QVector<Place> m_places;
    QVector<Place> m_taken;
    int m_grid = 0;
    int m_size = 0;
    int m_oddPercent = 0;
    int m_extremePercent = 0;
    int m_pointPercent = 0;
    int m_textPercent = 0;
    int m_slipPercent = 0;
    double m_offset = 0;
    QString m_delimiter;
    QString m_lineEnd;
    QByteArray m_fileCodec;
};
