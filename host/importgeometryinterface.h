#pragma once

#include <QList>
#include <QString>
#include <QtPlugin>

/// Where the host keeps the parts of a vertex and of an object: zero-based columns of its tables.
struct GeometryInfo
{
    qint32 nColNum;   ///< designation of a point, in the coordinate table
    qint32 xColNum;   ///< X, in the coordinate table
    qint32 yColNum;   ///< Y, in the coordinate table
    qint32 defColNum; ///< designation of an object, in the object table
};

/// What the host asks of an import plug-in.
///
/// The order of the virtual functions is the binary interface between host and plug-in; it never changes.
class ImportGeometryInterface
{
public:
    virtual ~ImportGeometryInterface() = default;

    /// The names of the operations on offer, as the host shows them in its menu.
    virtual QList<QString> operations() const = 0;

    /// Runs the operation named \a op and returns its objects as an XML text, or an empty string after a cancel.
    ///
    /// \a objectTableName and \a pointTableName name the host's tables. \a statusFunc takes the messages of this call
    /// and of everything that follows until the next call; null means that nobody listens.
    virtual QString operation(const QString &op, const QString &formName, const QString &objectTableName,
                              const QString &pointTableName, const GeometryInfo &info,
                              void (*statusFunc)(const QString &)) = 0;
};

Q_DECLARE_INTERFACE(ImportGeometryInterface, "zelmarq.Orvindal.ImportGeometryInterface/1.0")
