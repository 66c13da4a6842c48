#include "ui_dialog.h"

#include <QSignalSpy>
#include <QTest>

#include <array>
#include <cstring>

/// What the form makes on a plain dialog: its widgets, layouts and connections.
class tst_DialogLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void dialogIsNamedOnlyWhenItHasNoName();
    void dialogIsSizedAndTitled();
    void membersStandInCreationOrder();
    void widgetsAreMadeInOrderAndNoMore();
    void viewsLieInTheSplitter();
    void layoutHoldsItsItems_data();
    void layoutHoldsItsItems();
    void tabOrderFollowsTheForm();
    void slotsAreConnectedByName();
    void buttonBoxIsNotConnected();

private:
    QDialog *dialog = nullptr;
    Ui::Dialog ui = {};
};

namespace {

QString str(const char *text)
{
    return QString::fromUtf8(text);
}

QStringList words(const char *text)
{
    return str(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QStringList namesOf(const QObjectList &objects)
{
    QStringList names;
    for (const QObject *object : objects)
        names.append(object->objectName());
    return names;
}

/// The widgets that lie on the dialog itself, in creation order.
QStringList widgetNames()
{
    return words("objectFileLabel objectFileNameEdit objectFileButton pointFileLabel pointFileNameEdit pointFileButton "
                 "searchPointDefsCheck label_3 pointPrefEdit label_4 pointStartNumSpin swapXYCheck usePointFileCheck "
                 "searchObjectDefsCheck label_6 objectPrefEdit label_7 objectStartNumSpin label_8 encodingCombo "
                 "label fieldSpin_0 fieldEdit_0 plusToolButton minusToolButton splitter "
                 "startButton sortButton updateCheck buttonBox");
}

QString itemName(QLayoutItem *item)
{
    const QObject *const object = item->layout() != nullptr ? static_cast<QObject *>(item->layout()) : item->widget();
    return object != nullptr ? object->objectName() : QStringLiteral("spacer");
}

/// Has slots that are called as those of the import dialog.
class SlotCounter : public QDialog
{
    Q_OBJECT

public:
    int starts = 0;
    int toggles = 0;
    int edits = 0;

private Q_SLOTS:
    void on_startButton_clicked() { ++starts; }
    void on_usePointFileCheck_toggled(bool /*checked*/) { ++toggles; }
    void on_objectFileNameEdit_textChanged(const QString & /*text*/) { ++edits; }
};

} // namespace

void tst_DialogLayout::init()
{
    dialog = new QDialog;
    ui.setupUi(dialog);
}

void tst_DialogLayout::cleanup()
{
    delete dialog;
}

void tst_DialogLayout::dialogIsNamedOnlyWhenItHasNoName()
{
    QCOMPARE(dialog->objectName(), QStringLiteral("Dialog"));

    QDialog other;
    other.setObjectName(QStringLiteral("import"));
    Ui::Dialog otherUi = {};
    otherUi.setupUi(&other);
    QCOMPARE(other.objectName(), QStringLiteral("import"));
}

void tst_DialogLayout::dialogIsSizedAndTitled()
{
    QCOMPARE(dialog->size(), QSize(753, 633));
    QCOMPARE(dialog->windowTitle(), QStringLiteral("Dialog"));
}

void tst_DialogLayout::membersStandInCreationOrder()
{
    const QStringList names =
        words("verticalLayout horizontalLayout objectFileLabel objectFileNameEdit objectFileButton horizontalLayout_2 "
              "pointFileLabel pointFileNameEdit pointFileButton horizontalLayout_5 searchPointDefsCheck label_3 "
              "pointPrefEdit label_4 pointStartNumSpin swapXYCheck usePointFileCheck horizontalLayout_3 "
              "searchObjectDefsCheck label_6 objectPrefEdit label_7 objectStartNumSpin label_8 encodingCombo "
              "horizontalLayout_6 label horizontalLayout_7 fieldSpin_0 fieldEdit_0 plusToolButton minusToolButton "
              "splitter listView tableView horizontalLayout_4 startButton sortButton updateCheck buttonBox");

    // The class is nothing but its pointers, and QObject is the first base of what they point to.
    std::array<QObject *, sizeof(Ui::Dialog) / sizeof(QObject *)> members{};
    std::memcpy(members.data(), &ui, sizeof ui);

    QStringList found;
    for (const QObject *member : members)
        found.append(member->objectName());
    QCOMPARE(found, names);
}

void tst_DialogLayout::widgetsAreMadeInOrderAndNoMore()
{
    QStringList found;
    for (const QObject *object : dialog->children()) {
        if (object->isWidgetType())
            found.append(object->objectName());
    }
    QCOMPARE(found, widgetNames());
    QCOMPARE(dialog->children().size(), widgetNames().size() + 1);
    QCOMPARE(dialog->layout()->objectName(), QStringLiteral("verticalLayout"));
}

void tst_DialogLayout::viewsLieInTheSplitter()
{
    QObjectList views = ui.splitter->children();
    for (int i = 0; i < ui.splitter->count(); ++i)
        QVERIFY(views.removeOne(ui.splitter->handle(i)));
    // The splitter stacks its children as it likes: their order among them says nothing.
    QStringList names = namesOf(views);
    names.sort();
    QCOMPARE(names, words("listView tableView"));
    QCOMPARE(ui.splitter->count(), 2);
    QCOMPARE(ui.splitter->widget(0), ui.listView);
    QCOMPARE(ui.splitter->widget(1), ui.tableView);
}

void tst_DialogLayout::layoutHoldsItsItems_data()
{
    QTest::addColumn<bool>("vertical");
    QTest::addColumn<int>("spacing"); // -1 is that of the style
    QTest::addColumn<QStringList>("items");

    QTest::newRow("verticalLayout") << true << -1
                                    << words("horizontalLayout horizontalLayout_2 horizontalLayout_5 "
                                             "horizontalLayout_3 horizontalLayout_6 splitter horizontalLayout_4");
    QTest::newRow("horizontalLayout") << false << -1 << words("objectFileLabel objectFileNameEdit objectFileButton");
    QTest::newRow("horizontalLayout_2") << false << -1 << words("pointFileLabel pointFileNameEdit pointFileButton");
    QTest::newRow("horizontalLayout_5") << false << -1
                                        << words("searchPointDefsCheck label_3 pointPrefEdit label_4 "
                                                 "pointStartNumSpin swapXYCheck usePointFileCheck");
    QTest::newRow("horizontalLayout_3") << false << -1
                                        << words("searchObjectDefsCheck label_6 objectPrefEdit label_7 "
                                                 "objectStartNumSpin label_8 encodingCombo");
    QTest::newRow("horizontalLayout_6") << false << 2
                                        << words("label horizontalLayout_7 plusToolButton minusToolButton");
    QTest::newRow("horizontalLayout_7") << false << 2 << words("fieldSpin_0 fieldEdit_0");
    QTest::newRow("horizontalLayout_4") << false << -1 << words("startButton sortButton updateCheck buttonBox");
}

void tst_DialogLayout::layoutHoldsItsItems()
{
    QFETCH(bool, vertical);
    QFETCH(int, spacing);
    QFETCH(QStringList, items);
    auto *const layout = dialog->findChild<QBoxLayout *>(str(QTest::currentDataTag()));
    QVERIFY(layout != nullptr);
    const int styleSpacing = dialog->style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing, nullptr, dialog);
    QVERIFY(styleSpacing != 2);

    QCOMPARE(layout->metaObject()->className(), vertical ? "QVBoxLayout" : "QHBoxLayout");
    QCOMPARE(layout->spacing(), spacing < 0 ? styleSpacing : spacing);
    QStringList found;
    for (int i = 0; i < layout->count(); ++i) {
        found.append(itemName(layout->itemAt(i)));
        QCOMPARE(layout->stretch(i), 0);
        QCOMPARE(layout->itemAt(i)->alignment(), Qt::Alignment());
    }
    QCOMPARE(found, items);
}

// Compound widgets keep their own parts in the chain; only what the form names is looked at.
void tst_DialogLayout::tabOrderFollowsTheForm()
{
    const QStringList order =
        words("objectFileNameEdit objectFileButton pointFileNameEdit pointFileButton searchPointDefsCheck "
              "pointPrefEdit pointStartNumSpin swapXYCheck usePointFileCheck searchObjectDefsCheck objectPrefEdit "
              "objectStartNumSpin encodingCombo listView tableView startButton");
    const QStringList named = widgetNames() + words("listView tableView");

    QStringList found;
    const QWidget *widget = ui.objectFileNameEdit;
    while (found.size() < order.size()) {
        if (named.contains(widget->objectName()) && (widget->focusPolicy() & Qt::TabFocus) != 0)
            found.append(widget->objectName());
        widget = widget->nextInFocusChain();
        QVERIFY(widget != ui.objectFileNameEdit);
    }
    QCOMPARE(found, order);
}

void tst_DialogLayout::slotsAreConnectedByName()
{
    SlotCounter counter;
    Ui::Dialog counterUi = {};
    counterUi.setupUi(&counter);
    QCOMPARE(counter.toggles, 0);

    counterUi.startButton->click();
    QCOMPARE(counter.starts, 0);
    counterUi.startButton->setEnabled(true);
    counterUi.startButton->click();
    QCOMPARE(counter.starts, 1);
    counterUi.usePointFileCheck->click();
    QCOMPARE(counter.toggles, 1);
    counterUi.objectFileNameEdit->setText(QStringLiteral("план.mif"));
    QCOMPARE(counter.edits, 1);
}

void tst_DialogLayout::buttonBoxIsNotConnected()
{
    const QSignalSpy finished(dialog, &QDialog::finished);
    ui.buttonBox->button(QDialogButtonBox::Ok)->click();
    ui.buttonBox->button(QDialogButtonBox::Cancel)->click();
    QCOMPARE(finished.count(), 0);
}

QTEST_MAIN(tst_DialogLayout)
#include "tst_dialog_layout.moc"
