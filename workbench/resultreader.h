#pragma once

#include "importgeometryinterface.h"
#include "importresult.h"

#include <QXmlStreamReader>

/// Reads a result document into an ImportResult, as a host would.
///
///     FormTable [Name] [Update]          table of objects
///         Row                            object
///             Cell …                     empty cells before the designation
///             Cell                       designation
///             FormTable [Name]           table of its vertices
///                 Row                    vertex: a cell for each column
///                 Row                    without cells: separates two contours
///
/// Use one reader per document.
class ResultReader
{
public:
    /// \a columns are those that the plug-in was called with.
    explicit ResultReader(const GeometryInfo &columns) : m_columns(columns) {}

    /// Reads all of \a text. Returns false if it is not such a document; error() is then the reason, and the result is
    /// empty.
    bool read(const QString &text);

    const ImportResult &result() const { return m_result; }

    /// For the user; empty without an error.
    const QString &error() const { return m_error; }

private:
    bool fail(const QString &what);
    bool failAtElement(const QString &what);
    bool readChild(QByteArray *text = nullptr);
    bool readDocument();
    bool readObject();
    bool readDef(QString &def);
    bool readVertices();
    bool readVertex();
    bool readCell();
    void beginContour();
    bool isClosed(const ResultContour &contour) const;

    GeometryInfo m_columns;
    QXmlStreamReader m_xml;
    ImportResult m_result;
    QString m_error;
    QByteArray m_row; ///< the cells of the current row
};
