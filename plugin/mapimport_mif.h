#pragma once

#include "mapimport.h"

#include <QHash>
#include <QSet>

/// Reads a MIF file and the MID file of the same name.
class MifImport : public MapImport
{
public:
    MifImport();

protected:
    bool loadPoints() override;
    bool loadPolygons() override;

private:
    using Reader = bool (MifImport::*)();
    using Readers = QHash<QString, Reader>;

    bool readTokenizeMifLine(bool tokenize);
    bool checkMifFile();
    bool checkHeaderLine(const QString &keyword);

    bool openMidFile();
    bool readMidLine();
    bool readMidDef(QString *def);
    QString extractDef(QStringView record) const;
    bool hasToken(int i, double &number) const;
    bool hasToken(int i, int &number) const;

    bool readPoint();
    bool readLine();
    bool readVert(bool closing);
    bool readSub(int count, bool closeLast);
    bool readCountedSub(int minCount, bool closeLast);
    bool readPline();
    bool readPlineMultiple();
    bool readRegion();

    bool loadPoint();
    bool loadLine();
    bool loadPline();
    bool loadRegion();
    bool loadObjectDef();
    bool skipRecord();

    bool loadPass(bool searchDefs, const Readers &readers);
    void skipHeader();
    bool readData(const Readers &readers);

    QSet<QString> objectKeywords; ///< first words of lines that begin an object
    QChar delimiter;              ///< of the fields of a MID record; from the header
    QChar tokenSeparator;         ///< of the words of a MIF line
    Tokens tokens;                ///< words of the last line that was split; valid as long as the line
    QString keyword;              ///< first word of such a line, in upper case
    QFile midFile;                ///< open while designations are looked up
    LineReader midStream;
    QStringView midLine; ///< the last record, trimmed; valid until the next but one is read
    int midLineNo = 0;   ///< its number, from 1
};
