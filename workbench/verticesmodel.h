#pragma once

#include "importgeometryinterface.h"
#include "importresult.h"

#include <QAbstractTableModel>

/// The rows of an object's vertex table as the host receives them: cells as texts, an empty row between contours.
class VerticesModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// \a columns are those that the plug-in was called with. They get names in the header.
    explicit VerticesModel(const GeometryInfo &columns, QObject *parent = nullptr);

    /// Shows no object until setObject() is called.
    void setResult(const ImportResult &result);

    /// Shows \a object; -1: none.
    void setObject(int object);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    int vertexAt(int row) const;

    const GeometryInfo m_columns;
    ImportResult m_result;
    int m_object = -1;
};
