#include "modeltesting.h"

#include <QTest>

#include <functional>
#include <memory>

namespace {

/// A table of vertices or a list of objects, with its first cell and with another content to show.
struct Shown
{
    explicit Shown(bool isTable)
    {
        if (isTable) {
            auto *const table = new OpenModel<DefPolygonTableModel>;
            table->setPolygon(&objects[0]);
            showOther = [this, table] { table->setPolygon(&others[0]); };
            indexAt = [table](int row) { return table->createIndex(row, 0); };
            model.reset(table);
        } else {
            auto *const list = new OpenModel<DefMapTableModel>;
            list->setMap(&objects);
            showOther = [this, list] { list->setMap(&others); };
            indexAt = [list](int row) { return list->createIndex(row, 0); };
            model.reset(list);
        }
    }

    QString text() const { return model->index(0, 0).data().toString(); }

    QVector<DefPolygon> objects{{QStringLiteral("ЗУ1"), {{DefPoint{QStringLiteral("н1"), 1, 2}}}}};
    QVector<DefPolygon> others{{QStringLiteral("ЗУ2"), {{DefPoint{QStringLiteral("н2"), 3, 4}}}}};
    std::unique_ptr<QAbstractItemModel> model;
    std::function<void()> showOther;
    std::function<QModelIndex(int)> indexAt;
};

} // namespace

/// What those see who look at a model as soon as it tells them something.
class tst_DefPolygonTableModelSignals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oldTextIsThereBeforeAReset_data() { models(); }
    void oldTextIsThereBeforeAReset();
    void newTextIsThereWhenItIsTold_data() { models(); }
    void newTextIsThereWhenItIsTold();
    void rowAfterTheLastIsEmpty_data() { models(); }
    void rowAfterTheLastIsEmpty();

private:
    static void models()
    {
        QTest::addColumn<bool>("isTable");

        QTest::newRow("vertices") << true;
        QTest::newRow("objects") << false;
    }
};

void tst_DefPolygonTableModelSignals::oldTextIsThereBeforeAReset()
{
    QFETCH(bool, isTable);
    const Shown shown(isTable);
    QStringList seen;
    const auto see = [&] { seen.append(shown.text()); };
    connect(shown.model.get(), &QAbstractItemModel::modelAboutToBeReset, this, see);
    connect(shown.model.get(), &QAbstractItemModel::modelReset, this, see);

    shown.showOther();

    QCOMPARE(seen, isTable ? (QStringList{QStringLiteral("н1"), QStringLiteral("н2")})
                           : (QStringList{QStringLiteral("ЗУ1"), QStringLiteral("ЗУ2")}));
}

void tst_DefPolygonTableModelSignals::newTextIsThereWhenItIsTold()
{
    QFETCH(bool, isTable);
    const Shown shown(isTable);
    QStringList seen;
    connect(shown.model.get(), &QAbstractItemModel::dataChanged, this, [&] { seen.append(shown.text()); });

    QVERIFY(shown.model->setData(shown.model->index(0, 0), QStringLiteral("т")));

    QCOMPARE(seen, (QStringList{QStringLiteral("т"), QStringLiteral("т")}));
}

void tst_DefPolygonTableModelSignals::rowAfterTheLastIsEmpty()
{
    QFETCH(bool, isTable);
    const Shown shown(isTable);
    const QModelIndex index = shown.indexAt(1);

    for (int role = 0; role < Qt::UserRole; ++role)
        QVERIFY(!shown.model->data(index, role).isValid());
    QVERIFY(!shown.model->setData(index, QStringLiteral("т")));
    QVERIFY(!isTable || shown.model->flags(index) == Qt::NoItemFlags);
}

QTEST_GUILESS_MAIN(tst_DefPolygonTableModelSignals)
#include "tst_defpolygontablemodel_signals.moc"
