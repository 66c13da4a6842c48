#pragma once

#include "mapimport.h"

#include <QHash>
#include <QSet>

/// Reads a MIF file and, for designations, the MID file beside it.
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
    bool toNumber(int i, double &number) const;
    bool toNumber(int i, int &number) const;

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

    QSet<QString> objectKeywords; ///< first tokens of the lines that begin an object
    QChar delimiter;              ///< of the fields of a MID record; from the header
    QChar tokenSeparator;         ///< a space; published but unused, as Tokens splits at any white space
    Tokens tokens;                ///< of the last line that was split; valid as long as the line
    QString keyword;              ///< first token of the current line in upper case
    QFile midFile;                ///< open during a pass that reads designations
    LineReader midStream;
    QStringView midLine; ///< last record, trimmed; remains valid during the next read
    int midLineNo = 0;   ///< its line number, counted from 1
};
