// An import plug-in without a dialog: its result is the name of the operation, its message the name of the form.

#include "importgeometryinterface.h"

#include <QObject>

class EchoPlugin : public QObject, public ImportGeometryInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "zelmarq.Orvindal.ImportGeometryInterface")
    Q_INTERFACES(ImportGeometryInterface)

public:
    QList<QString> operations() const override { return {}; }

    QString operation(const QString &op, const QString &formName, const QString & /*objectTableName*/,
                      const QString & /*pointTableName*/, const GeometryInfo & /*info*/,
                      void (*statusFunc)(const QString &)) override
    {
        if (!formName.isEmpty())
            statusFunc(formName);
        return op;
    }
};

#include "echoplugin.moc"
