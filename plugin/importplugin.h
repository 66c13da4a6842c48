#pragma once

#include "importgeometryinterface.h"

#include <QObject>

/// The object that the host loads: offers the imports from MIF and from DXF.
class ImportPlugin : public QObject, public ImportGeometryInterface
{
    Q_OBJECT
    // Without the version that the interface's own identifier carries: the host looks for both as they are.
    Q_PLUGIN_METADATA(IID "zelmarq.Orvindal.ImportGeometryInterface")
    Q_INTERFACES(ImportGeometryInterface)

public:
    QList<QString> operations() const override;
    QString operation(const QString &op, const QString &formName, const QString &objectTableName,
                      const QString &pointTableName, const GeometryInfo &info,
                      void (*statusFunc)(const QString &)) override;
};
