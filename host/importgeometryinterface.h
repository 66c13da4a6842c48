#pragma once

#include <QList>
#include <QString>
#include <QtPlugin>

/// Zero-based columns of the host's tables.
struct GeometryInfo
{
    qint32 nColNum;   ///< point designation, in the coordinate table
    qint32 xColNum;   ///< X, in the coordinate table
    qint32 yColNum;   ///< Y, in the coordinate table
    qint32 defColNum; ///< object designation, in the object table
};

/// The interface of an import plug-in, as the host declares it.
///
/// The order of the virtual functions is part of the binary interface; it never changes.
class ImportGeometryInterface
{
public:
    virtual ~ImportGeometryInterface() = default;

    /// Returns the names of the operations, as the host shows them in its menu.
    virtual QList<QString> operations() const = 0;

    /// Runs the operation named \a op in a modal dialog; call it from the GUI thread. Returns the objects as XML text,
    /// or an empty string after a cancel, for an unknown \a op, or if the result exceeds memory.
    ///
    /// \a formName, \a objectTableName and \a pointTableName are names in the host; the result contains only those of
    /// the tables. \a statusFunc receives the messages and must stay valid until the next call; null discards them.
    virtual QString operation(const QString &op, const QString &formName, const QString &objectTableName,
                              const QString &pointTableName, const GeometryInfo &info,
                              void (*statusFunc)(const QString &)) = 0;
};

Q_DECLARE_INTERFACE(ImportGeometryInterface, "zelmarq.Orvindal.ImportGeometryInterface/1.0")
