#pragma once

#include "defpolygon.h"
#include "defpolygontablemodel_index.h"

#include <QAbstractTableModel>
#include <QMap>
#include <QVector>

#include <limits>
#include <optional>

/// The list of objects: one row per object, with its designation. Duplicate designations are coloured.
class DefMapTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit DefMapTableModel(QObject *parent = nullptr);

    /// Shows and edits \a map, which the caller owns and keeps alive while it is shown; null shows nothing.
    void setMap(QVector<DefPolygon> *map);

    /// Detaches from the objects before their owner replaces them. Emits no signal: views keep what they painted, and
    /// data() is empty until the next setMap().
    void detachMap();

    /// True when another object has the designation of \a row, ignoring case. An empty one is never a duplicate.
    ///
    /// Changes made outside the model are detected within the limits of DuplicateIndex::isCurrent().
    bool isDuplicateDef(int row) const;

    /// Builds the index of isDuplicateDef() in advance, unless it is current for \a row.
    void ensureDuplicateIndex(int row = 0) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    bool hasObject(int row) const { return map != nullptr && row >= 0 && row < map->size(); }
    bool isIndexed(int row) const { return duplicateIndex.has_value() && duplicateIndex->isCurrent(*map, row); }

    QVector<DefPolygon> *map = nullptr;
    mutable std::optional<DuplicateIndex> duplicateIndex; ///< of the map; built on first use
};

/// The vertex shown in a row of the vertex table; both indexes are -1 in a separator between two contours.
struct RowInfo
{
    bool operator==(const RowInfo &other) const
    {
        return contourIndex == other.contourIndex && vertexIndex == other.vertexIndex;
    }

    int contourIndex;
    int vertexIndex;
};

/// A column of the vertex table with content.
struct ValueColumn
{
    enum Content { Nothing, Def, X, Y, Field };

    int number;      ///< counted from 0
    Content content; ///< never Nothing
    QString text;    ///< for Field: the constant text of all vertices
};

Q_DECLARE_TYPEINFO(RowInfo, Q_PRIMITIVE_TYPE);

/// The vertices of one object in the columns of the host's coordinate table.
///
/// An empty row separates two contours. A vertex is coloured if its designation also occurs at another position.
/// Designations can be edited; the change is stored in the object.
class DefPolygonTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit DefPolygonTableModel(QObject *parent = nullptr);

    /// Sets the zero-based columns of designation, X and Y. The table may grow but never shrinks. Emits no signal.
    void setNxyColNum(int n, int x, int y);

    /// Sets constant texts of whole columns, by zero-based column. Emits no signal.
    void setFieldNumValueMap(const QMap<int, QString> &values);

    /// Column limit for views, which lay out all columns, even hidden ones.
    static constexpr int maxShownColumns = 10000;
    /// Limits columnCount() to \a count. Emits no signal.
    void setColumnLimit(int count) { columnLimit = count; }

    /// Shows and edits \a p, which the caller owns and keeps alive while it is shown; null shows nothing.
    void setPolygon(DefPolygon *p);

    /// Detaches from the object before its owner destroys it. Emits no signal: the rows stay, empty and read-only,
    /// until the next setPolygon().
    void detachPolygon();

    /// Updates the table after the owner has moved another object to the address of the shown one. If each contour has
    /// as many vertices as before, emits dataChanged(), so that views keep the current cell; otherwise resets the
    /// model. Does nothing without an object.
    void refresh();

    /// Rebuilds the row layout from the contours of the object. Emits no signal.
    void rebuildRows();

    /// True if the designation of \a row, ignoring case, occurs in another row at a different position.
    ///
    /// Changes made outside the model are detected because they detach the contours, which the model shares. Writes
    /// through a reference taken before the first call are not detected.
    bool isConflictingPoint(int row) const;

    /// Builds the index of isConflictingPoint() in advance, unless it is current.
    void ensureConflictIndex() const;

    /// Columns with content, in ascending order; data() is empty in all others.
    QVector<ValueColumn> valueColumns() const;

    /// The vertex in \a row, valid until the object changes; null in a row without a vertex.
    const DefPoint *vertexAt(int row) const { return hasVertex(row) ? &vertex(row) : nullptr; }

    /// Decimals of formatCoord(), from coordPrecision(). The first number above 0 is kept for the life of the process.
    static int coordDecimals();

    /// Formats \a v with the decimals of coordPrecision(), in the default locale if \a localized, else in the C locale.
    ///
    /// The first call of this function or of coordDecimals() fixes the locale for the life of the process.
    QString formatCoord(double v, bool localized) const;

    static double coordPrecision() { return s_coordPrecision; }
    /// Ignored unless \a p is above 0; no effect on texts once coordDecimals() has fixed a number above 0.
    static void setCoordPrecision(double p);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    void appendRows(QVector<RowInfo> &layout) const;
    bool isSeparator(int row) const;
    bool hasVertex(int row) const;
    const DefPoint &vertex(int row) const;
    void invalidateConflictIndex();
    QVariant vertexBackground(int row) const;
    ValueColumn::Content contentOf(int column) const;
    QString vertexText(const DefPoint &vertex, int column, bool localized) const;

    DefPolygon *polygon = nullptr;
    int nColNum = 0;
    int xColNum = 1;
    int yColNum = 2;
    int maxColNum = 2; ///< the highest column in use
    int columnLimit = std::numeric_limits<int>::max();
    QVector<RowInfo> rows;
    QMap<int, QString> fieldNumValueMap;
    mutable std::optional<DefMap<ConflictIndex>> conflictIndex; ///< of the vertices in the rows; built on first use
    mutable QVector<QVector<DefPoint>> indexedContours;         ///< shared copy of the indexed contours

    static double s_coordPrecision;
};
