#pragma once

#include "defpolygon.h"
#include "defpolygontablemodel_index.h"

#include <QAbstractTableModel>
#include <QMap>
#include <QVector>

#include <optional>

/// The list of objects: one row an object, one column, the designation. Designations that occur twice are coloured.
class DefMapTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit DefMapTableModel(QObject *parent = nullptr);

    /// Shows and edits \a map, which stays the caller's and has to live as long as it is shown; null shows nothing.
    void setMap(QVector<DefPolygon> *map);

    /// Lets go of the objects before their owner replaces them. Nothing is signalled: views keep what they have
    /// painted, and every row they still ask for is empty until the next setMap().
    void detachMap();

    /// True when another object has the designation of this \a row, ignoring case; an empty one is never a duplicate.
    ///
    /// Another import and another order of the objects are noticed; for a designation that is written past the model
    /// see DuplicateIndex::isCurrent().
    bool isDuplicateDef(int row) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    bool hasObject(int row) const { return map != nullptr && row >= 0 && row < map->size(); }
    bool isCounted(int row) const { return duplicateIndex.has_value() && duplicateIndex->isCurrent(*map, row); }

    QVector<DefPolygon> *map = nullptr;
    mutable std::optional<DuplicateIndex> duplicateIndex; ///< of the map; made when they are asked for
};

/// Which vertex a row of the vertex table shows; both -1 in the row that separates two contours.
struct RowInfo
{
    int contourIndex;
    int vertexIndex;
};

/// The vertices of one object in the columns of the host's coordinate table.
///
/// An empty row separates two contours. A vertex whose designation stands at another place too is coloured. The
/// designation can be edited; the change goes into the object.
class DefPolygonTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit DefPolygonTableModel(QObject *parent = nullptr);

    /// Sets the zero-based columns of designation, X and Y. The table grows to hold them and never shrinks; nothing is
    /// signalled.
    void setNxyColNum(int n, int x, int y);

    /// Sets texts that fill whole columns, by zero-based column. Nothing is signalled.
    void setFieldNumValueMap(const QMap<int, QString> &values);

    /// Shows and edits \a p, which stays the caller's and has to live as long as it is shown; null shows nothing.
    void setPolygon(DefPolygon *p);

    /// Lets go of the object before its owner destroys it. Nothing is signalled: the rows stay, empty and read-only,
    /// until the next setPolygon().
    void detachPolygon();

    /// Shows what now stands where the object stood, after its owner has put another there. Without an object it does
    /// nothing.
    void refresh();

    /// Lays out the rows anew after the shape of the object has changed.
    void rebuildRows();

    /// True when the designation of this \a row, ignoring case, stands in another row at another place.
    ///
    /// A change of the object past the model is noticed, but not one through a reference to a vertex or a contour that
    /// was taken before the first question: the model shares the contours.
    bool isConflictingPoint(int row) const;

    /// The text of a cell as it is edited, without the detour over an index; null where data() has no value.
    QString text(int row, int column) const;

    /// \a v with the decimals of coordPrecision(): for people in the default locale, else with a decimal point.
    QString formatCoord(double v, bool localized) const;

    static double coordPrecision() { return s_coordPrecision; }
    /// Takes effect only for \a p above 0 and before the first coordinate has been formatted with decimals.
    static void setCoordPrecision(double p);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    bool isSeparator(int row) const;
    bool hasVertex(int row) const;
    const DefPoint &vertex(int row) const;
    void ensureConflictIndex() const;
    void invalidateConflictIndex();
    QVariant vertexBackground(int row) const;
    bool hasValue(int column) const;
    QString vertexText(const DefPoint &vertex, int column, bool localized) const;

    DefPolygon *polygon = nullptr;
    int nColNum = 0;
    int xColNum = 1;
    int yColNum = 2;
    int maxColNum = 2; ///< the last column of the table
    QVector<RowInfo> rows;
    QMap<int, QString> fieldNumValueMap;
    mutable std::optional<DefMap<ConflictIndex>>
        conflictIndex;                                 ///< of the vertices in the rows; made when they are asked for
    mutable QVector<QVector<DefPoint>> placedContours; ///< where they were found; shared with those of the object

    static double s_coordPrecision;
};
