#pragma once

#include <QByteArray>
#include <QHash>
#include <QtGlobal>

#include <vector>

/// Finds the entities of an ASCII drawing that only mark a point: circles, ellipses and insertions of blocks.
///
/// The import takes the centre of each as a known point. It is a symbol if it is small and stands on a vertex of a
/// closed outline or beside a number, so that nothing is lost when it becomes a point. Circles that mark nothing, and
/// blocks that hold the plan itself, are content.
class PointSymbols
{
public:
    /// A line of the file to be replaced so that a symbol becomes a point, and its attributes texts.
    struct Edit
    {
        qint64 line = 0;     ///< counted from 1
        qint64 position = 0; ///< in bytes
        int length = 0;
        const char *keyword = nullptr;
    };

    /// Looks through \a fileName, a path of GDAL. Returns false if it cannot be opened.
    bool find(const QByteArray &fileName);

    /// True if the entity whose keyword is in line \a line, counted from 1, is a symbol.
    bool contains(qint64 line) const;

    /// In the order of the file.
    const std::vector<Edit> &edits() const { return m_edits; }

    /// Number of symbols that are drawn; one in a block counts for each insertion of it.
    qint64 count() const { return m_count; }
    /// Number of features with lines or areas that GDAL would make of them.
    qint64 outlineCount() const { return m_outlineCount; }
    /// Number of texts in the blocks of symbols.
    qint64 textCount() const { return m_textCount; }

private:
    std::vector<Edit> m_edits;
    qint64 m_count = 0;
    qint64 m_outlineCount = 0;
    qint64 m_textCount = 0;
};
