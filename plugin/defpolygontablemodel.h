#pragma once

#include "defpolygon.h"
#include "defpolygontablemodel_index.h"

#include <QAbstractTableModel>
#include <QMap>
#include <QVector>

#include <limits>
#include <optional>

/// The list of objects: one row per object, with its designation. Designations that occur twice are coloured.
class DefMapTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit DefMapTableModel(QObject *parent = nullptr);

    /// Shows and edits \a map, which the caller owns and keeps alive while it is shown; null shows nothing.
    void setMap(QVector<DefPolygon> *map);

    /// Detaches from the objects before their owner replaces them. Nothing is signalled: views keep what they have
    /// painted, and the rows that they still ask for are empty until the next setMap().
    void detachMap();

    /// True when another object has the designation of \a row, ignoring case. An empty one is never a duplicate.
    ///
    /// Changes of the objects outside the model are noticed as far as DuplicateIndex::isCurrent() documents.
    bool isDuplicateDef(int row) const;

    /// Builds the index behind isDuplicateDef() unless it is current; otherwise the first question does.
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
    mutable std::optional<DuplicateIndex> duplicateIndex; ///< of the map; built at the first question
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

/// A column of the vertex table in which a vertex can have a value.
struct ValueColumn
{
    enum Content { Nothing, Def, X, Y, Field };

    int number;      ///< counted from 0
    Content content; ///< never Nothing
    QString text;    ///< of an extra field, for all vertices
};

Q_DECLARE_TYPEINFO(RowInfo, Q_PRIMITIVE_TYPE);

/// The vertices of one object in the columns of the host's coordinate table.
///
/// An empty row separates two contours. Vertices are coloured when their designation also occurs at another place.
/// Designations can be edited; the change is stored in the object.
class DefPolygonTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit DefPolygonTableModel(QObject *parent = nullptr);

    /// Sets the zero-based columns of designation, X and Y. The table grows to hold them and never shrinks. Nothing is
    /// signalled.
    void setNxyColNum(int n, int x, int y);

    /// Sets constant texts of whole columns, by zero-based column. Nothing is signalled.
    void setFieldNumValueMap(const QMap<int, QString> &values);

    /// The limit for views: they lay out every column of a model, visible or not.
    static constexpr int maxShownColumns = 10000;
    /// Limits columnCount() to \a count. Nothing is signalled.
    void setColumnLimit(int count) { columnLimit = count; }

    /// Shows and edits \a p, which the caller owns and keeps alive while it is shown; null shows nothing.
    void setPolygon(DefPolygon *p);

    /// Detaches from the object before its owner destroys it. Nothing is signalled: the rows stay, empty and read-only,
    /// until the next setPolygon().
    void detachPolygon();

    /// Shows the object that now is at the address of the one shown, after its owner has moved objects. Views keep
    /// their current cell if it has as many vertices in each contour. Does nothing without an object.
    void refresh();

    /// Rebuilds the row layout from the contours of the object. Nothing is signalled.
    void rebuildRows();

    /// True when the designation of \a row, ignoring case, occurs in another row at another place.
    ///
    /// Changes of the object outside the model are noticed, except through a reference to a contour or vertex that was
    /// taken before the first question: the model shares the contours.
    bool isConflictingPoint(int row) const;

    /// Builds the index behind isConflictingPoint() unless it is current; otherwise the first question does.
    void ensureConflictIndex() const;

    /// The columns that can have values, in ascending order; data() has a value in no other.
    QVector<ValueColumn> valueColumns() const;

    /// The vertex in \a row; null in a row without a vertex.
    const DefPoint *vertexAt(int row) const { return hasVertex(row) ? &vertex(row) : nullptr; }

    /// The decimals of formatCoord().
    static int coordDecimals();

    /// Formats \a v with the decimals of coordPrecision(), in the default locale if \a localized, else in the C locale.
    ///
    /// Locale and number of decimals are fixed at the first call and kept for the life of the process.
    QString formatCoord(double v, bool localized) const;

    static double coordPrecision() { return s_coordPrecision; }
    /// Takes effect only for \a p above 0 and before formatCoord() has fixed the number of decimals.
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
    mutable std::optional<DefMap<ConflictIndex>>
        conflictIndex;                                 ///< of the vertices in the rows; built at the first question
    mutable QVector<QVector<DefPoint>> placedContours; ///< the contours that were indexed

    static double s_coordPrecision;
};
