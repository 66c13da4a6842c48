#pragma once

#include "importresult.h"
#include "resultmeasure.h"

#include <QAbstractTableModel>
#include <QBrush>

/// The objects of a result as a table that can be sorted and searched.
///
/// Rows are positions in the shown order; objects are indexes into the result. Only cells that are shown are formatted.
class ObjectsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Def, Contours, Vertices, Closed, Perimeter, Area, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    /// Shows \a result in the current order, filtered by the current text.
    void setResult(const ImportResult &result);

    /// Shows only the objects whose designations contain \a text, ignoring case; all of them if it is empty.
    void setFilter(const QString &text);

    /// Sorts by \a column; a column of -1 restores the order of the result.
    void sort(int column, Qt::SortOrder order) override;

    /// The background of designations that occur more than once.
    void setDuplicateBrush(const QBrush &brush);
    int duplicateCount() const { return m_isDuplicate.count(true); }

    /// The object in \a row, or -1 if there is no such row.
    int objectAt(int row) const { return m_objects.value(row, -1); }

    /// The row of \a object, or -1 if it is hidden.
    int rowOf(int object) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString text(int object, int column) const;
    QString toolTip(int object) const;
    QVector<int> shownObjects() const;
    void sortObjects(QVector<int> &objects) const;
    void sortByDef(QVector<int> &objects) const;
    double sortKey(int object) const;

    ImportResult m_result;
    QVector<ObjectMeasure> m_measures;
    QVector<bool> m_isDuplicate;
    QBrush m_duplicateBrush;
    QString m_filter;
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    QVector<int> m_objects; ///< by row
};
