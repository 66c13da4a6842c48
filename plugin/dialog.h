#pragma once

#include "defpolygon.h"
#include "defpolygontablemodel.h"
#include "dialog_elidingdelegate.h"

#include <QDialog>
#include <QIdentityProxyModel>
#include <QMap>
#include <QString>
#include <QVector>

#include <memory>

class MapImport;
class QLineEdit;
class QSettings;

namespace Ui {
class Dialog;
}

/// The first columns of a table, as many as a view can be given: it lays out each of them, seen or not.
class ColumnLimitProxyModel : public QIdentityProxyModel
{
    Q_OBJECT

public:
    static constexpr int maxCount = 10000;

    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
};

/// Drives one import: choice of files and options, inspection of the objects, and the result for the host.
///
/// The choices are read from the settings when the dialog is built and saved when it is destroyed.
class Dialog : public QDialog
{
    Q_OBJECT

public:
    explicit Dialog(QWidget *parent = nullptr);
    ~Dialog() override;

    /// The objects as the XML text that the host takes; the extra fields are those of the last processing run.
    QString stringResult();

    void readSettings();
    void writeSettings();
    /// Rebuilds fieldNumValueMap from the rows of extra fields on the form; rows without a text are left out.
    void readFields();
    /// Shows the first five entries of fieldNumValueMap on the form, and adds the rows that this takes.
    void writeFields();

private:
    Ui::Dialog *ui;
    QString lastPath;

public:
    QVector<DefPolygon> objects;
    DefPolygonTableModel polygonModel;
    DefMapTableModel mapModel;
    bool isDxf = false;
    int nColNum = 0;
    int xColNum = 2;
    int yColNum = 1;
    int defColNum = 0;
    QString formName;
    QString objectTableName;
    QString pointTableName;
    QMap<int, QString> fieldNumValueMap; ///< texts of the extra columns by zero-based column
    int fieldCount = 1;                  ///< rows of extra fields on the form

private Q_SLOTS:
    void on_objectFileButton_clicked();
    void on_pointFileButton_clicked();
    void on_startButton_clicked();
    void on_usePointFileCheck_toggled(bool checked);
    void on_plusToolButton_clicked();
    void on_minusToolButton_clicked();
    void procCurrentChanged(const QModelIndex &current, const QModelIndex &previous);
    void on_sortButton_clicked();
    void on_objectFileNameEdit_textChanged(const QString &text);

private:
    void chooseFile(QLineEdit *edit);
    void applyOptions(MapImport &importer);
    void showObjects();
    QAbstractItemModel *shownTable();

    DefDelegate defDelegate;             ///< of the list
    ElidingDelegate cellDelegate;        ///< of the table
    ColumnLimitProxyModel columnLimit;   ///< of polygonModel, when the host's columns lie very far apart
    std::unique_ptr<MapImport> importer; ///< kept after a run that brought no objects, until the next run
    bool isProcessing = false;           ///< the host may run an event loop while it takes a message
};

/// Reads the extra fields from the subgroup "FieldNumValueMap" of the open group of \a settings into \a map.
void loadFieldMap(QSettings &settings, QMap<int, QString> &map);

/// Replaces the extra fields in the settings by \a map; entries without a text are not stored.
void saveFieldMap(QSettings &settings, const QMap<int, QString> &map);
