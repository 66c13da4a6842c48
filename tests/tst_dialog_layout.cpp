#include "ui_dialog.h"

#include <QSignalSpy>
#include <QTest>
#include <QTranslator>

#include <array>
#include <cstring>

/// The form on a plain dialog: its widgets, their texts and properties, and its layouts.
class tst_DialogLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup() { delete dialog; }

    void dialogHasNameSizeAndTitle();
    void membersAreDeclaredInFormOrder();
    void layoutContainsItems_data();
    void layoutContainsItems();
    void tabOrderFollowsForm();
    void widgetHasClassAndTexts_data();
    void widgetHasClassAndTexts();
    void propertiesAreSet();
    void encodingsAreOffered();
    void buttonBoxIsNotConnected();
    void retranslationClearsPointPrefix();

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

/// Prefixes texts of the context "Dialog" with "@".
class MarkingTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char * /*disambiguation*/, int /*n*/) const override
    {
        return qstrcmp(context, "Dialog") == 0 ? QLatin1Char('@') + str(text) : QString();
    }
};

} // namespace

void tst_DialogLayout::initTestCase()
{
    static MarkingTranslator translator;
    QCoreApplication::installTranslator(&translator);
}

void tst_DialogLayout::init()
{
    dialog = new QDialog;
    ui.setupUi(dialog);
}

void tst_DialogLayout::dialogHasNameSizeAndTitle()
{
    QCOMPARE(dialog->objectName(), QStringLiteral("Dialog"));
    QCOMPARE(dialog->size(), QSize(753, 633));
    QCOMPARE(dialog->windowTitle(), QStringLiteral("@Dialog"));
}

void tst_DialogLayout::membersAreDeclaredInFormOrder()
{
    const QStringList names =
        words("verticalLayout horizontalLayout objectFileLabel objectFileNameEdit objectFileButton horizontalLayout_2 "
              "pointFileLabel pointFileNameEdit pointFileButton horizontalLayout_5 searchPointDefsCheck label_3 "
              "pointPrefEdit label_4 pointStartNumSpin swapXYCheck usePointFileCheck horizontalLayout_3 "
              "searchObjectDefsCheck label_6 objectPrefEdit label_7 objectStartNumSpin label_8 encodingCombo "
              "horizontalLayout_6 label horizontalLayout_7 fieldSpin_0 fieldEdit_0 plusToolButton minusToolButton "
              "splitter listView tableView horizontalLayout_4 startButton sortButton updateCheck buttonBox");

    // All members of the class are pointers to classes whose first base is QObject.
    std::array<QObject *, sizeof(Ui::Dialog) / sizeof(QObject *)> members{}; // NOLINT(bugprone-sizeof-*)
    std::memcpy(members.data(), &ui, sizeof ui);

    QStringList found;
    for (const QObject *member : members)
        found.append(member->objectName());
    QCOMPARE(found, names);
}

void tst_DialogLayout::layoutContainsItems_data()
{
    QTest::addColumn<int>("spacing"); // -1 is the spacing of the style
    QTest::addColumn<QStringList>("items");

    const auto row = [](const char *layout, const char *items, int spacing = -1) {
        QTest::newRow(layout) << spacing << words(items);
    };
    row("verticalLayout", "horizontalLayout horizontalLayout_2 horizontalLayout_5 horizontalLayout_3 "
                          "horizontalLayout_6 splitter horizontalLayout_4");
    row("horizontalLayout", "objectFileLabel objectFileNameEdit objectFileButton");
    row("horizontalLayout_2", "pointFileLabel pointFileNameEdit pointFileButton");
    row("horizontalLayout_5", "searchPointDefsCheck label_3 pointPrefEdit label_4 pointStartNumSpin swapXYCheck "
                              "usePointFileCheck");
    row("horizontalLayout_3", "searchObjectDefsCheck label_6 objectPrefEdit label_7 objectStartNumSpin label_8 "
                              "encodingCombo");
    row("horizontalLayout_6", "label horizontalLayout_7 plusToolButton minusToolButton", 2);
    row("horizontalLayout_7", "fieldSpin_0 fieldEdit_0", 2);
    row("horizontalLayout_4", "startButton sortButton updateCheck buttonBox");
}

void tst_DialogLayout::layoutContainsItems()
{
    QFETCH(int, spacing);
    QFETCH(QStringList, items);
    const QString name = str(QTest::currentDataTag());
    auto *const layout = dialog->findChild<QBoxLayout *>(name);
    QVERIFY(layout != nullptr);
    const int styleSpacing = dialog->style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing, nullptr, dialog);

    QCOMPARE(layout->direction(),
             name.startsWith(QLatin1Char('v')) ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    QCOMPARE(layout->spacing(), spacing < 0 ? styleSpacing : spacing);
    QStringList found;
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem *const item = layout->itemAt(i);
        const QObject *const object =
            item->layout() != nullptr ? static_cast<QObject *>(item->layout()) : item->widget();
        found.append(object != nullptr ? object->objectName() : QStringLiteral("spacer"));
        QCOMPARE(layout->stretch(i), 0);
        QCOMPARE(item->alignment(), Qt::Alignment());
    }
    QCOMPARE(found, items);
}

// The focus chain also contains the unnamed parts of compound widgets.
void tst_DialogLayout::tabOrderFollowsForm()
{
    QStringList order =
        words("objectFileNameEdit objectFileButton pointFileNameEdit pointFileButton searchPointDefsCheck "
              "pointPrefEdit pointStartNumSpin swapXYCheck usePointFileCheck searchObjectDefsCheck objectPrefEdit "
              "objectStartNumSpin encodingCombo listView tableView startButton");

    const QWidget *widget = ui.objectFileNameEdit;
    while (!order.isEmpty()) {
        if (widget->objectName() == order.first())
            order.removeFirst();
        widget = widget->nextInFocusChain();
        QVERIFY(order.isEmpty() || widget != ui.objectFileNameEdit);
    }
}

void tst_DialogLayout::widgetHasClassAndTexts_data()
{
    QTest::addColumn<QString>("widgetClass");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("toolTip");

    const auto row = [](const char *name, const char *widgetClass, const char *text, const char *toolTip) {
        QTest::newRow(name) << str(widgetClass) << str(text) << str(toolTip);
    };
    row("objectFileLabel", "QLabel", "Файл объектов:", "");
    row("objectFileNameEdit", "QLineEdit", "", "Основной файл для импорта объектов");
    row("objectFileButton", "QPushButton", "Выбрать...", "");
    row("pointFileLabel", "QLabel", "Файл точек:", "");
    row("pointFileNameEdit", "QLineEdit", "", "Дополнительный файл для импорта точек");
    row("pointFileButton", "QPushButton", "Выбрать...", "");
    row("searchPointDefsCheck", "QCheckBox", "Искать номера точек",
        "Если указано, то номера точек будут отыскиваться среди точечных объектов");
    row("label_3", "QLabel", "Префикс точек:", "");
    row("pointPrefEdit", "QLineEdit", "", "Префикс не найденных или автоматически пронумерованных точек");
    row("label_4", "QLabel", "Начальный номер:", "");
    row("pointStartNumSpin", "QSpinBox", "", "Начальный номер для автоматической нумерации не найденных точек");
    row("swapXYCheck", "QCheckBox", "Поменять X и Y",
        "Если указано, то координаты вершин X и Y будут поменяны местами");
    row("usePointFileCheck", "QCheckBox", "Точки отдельно",
        "Если указано, то обозначения точек могут быть загружены из отдельного файла");
    row("searchObjectDefsCheck", "QCheckBox", "Искать обозначения объектов",
        "Если указано, то обозначения объектов будут браться с объектов типа полигон или полилиния");
    row("label_6", "QLabel", "Префикс:", "");
    row("objectPrefEdit", "QLineEdit", "", "Префикс объектов, чье обозначение не удалось определить");
    row("label_7", "QLabel", "Начальный номер:", "");
    row("objectStartNumSpin", "QSpinBox", "",
        "Начальный номер для автоматической нумерации объектов, чье обозначение не удалось определить");
    row("label_8", "QLabel", "Кодировка:", "");
    row("encodingCombo", "QComboBox", "Default",
        "Кодировка обрабатываемых файлов для чтения обозначений, Default - использовать системную по умолчанию");
    row("label", "QLabel", "Заполнить поле:", "");
    row("fieldSpin_0", "QSpinBox", "", "Номер дополнительно заполняемого поля");
    row("fieldEdit_0", "QLineEdit", "", "Значение дополнительно заполняемого поля");
    row("plusToolButton", "QToolButton", "+", "Добавить дополнительные поля");
    row("minusToolButton", "QToolButton", "-", "Удалить дополнительные поля");
    row("splitter", "QSplitter", "", "");
    row("listView", "QListView", "", "");
    row("tableView", "QTableView", "", "");
    row("startButton", "QPushButton", "Обработать файл(ы)!", "");
    row("sortButton", "QPushButton", "Сортировать объекты", "");
    row("updateCheck", "QCheckBox", "Обновить при импорте", "");
    row("buttonBox", "QDialogButtonBox", "", "");
}

void tst_DialogLayout::widgetHasClassAndTexts()
{
    QFETCH(QString, widgetClass);
    QFETCH(QString, text);
    QFETCH(QString, toolTip);
    const auto *const widget = dialog->findChild<QWidget *>(str(QTest::currentDataTag()));
    QVERIFY(widget != nullptr);
    const bool hasValue = widgetClass == QLatin1String("QSpinBox");
    const QVariant shown = widget->property(widgetClass == QLatin1String("QComboBox") ? "currentText" : "text");
    const auto translated = [](const QString &source) { return source.isEmpty() ? source : QLatin1Char('@') + source; };

    QCOMPARE(QLatin1String(widget->metaObject()->className()), widgetClass);
    QCOMPARE(hasValue ? QString() : shown.toString(), translated(text));
    QCOMPARE(widget->toolTip(), translated(toolTip));
}

void tst_DialogLayout::propertiesAreSet()
{
    const char *const properties[] = {
        "pointPrefEdit maxLength 20",
        "pointStartNumSpin minimum 1",
        "pointStartNumSpin maximum 999999999",
        "objectStartNumSpin minimum 1",
        "objectStartNumSpin maximum 999999999",
        "fieldSpin_0 minimum 1",
        "fieldSpin_0 maximum 20",
        "fieldSpin_0 value 4",
        "usePointFileCheck checked true",
        "encodingCombo editable true",
        "startButton enabled false",
        "buttonBox centerButtons false",
    };
    for (const char *property : properties) {
        const QStringList parts = words(property);
        const QVariant value = dialog->findChild<QWidget *>(parts.at(0))->property(qPrintable(parts.at(1)));
        QCOMPARE(QStringList({parts.at(0), parts.at(1), value.toString()}), parts);
    }
    QCOMPARE(ui.splitter->orientation(), Qt::Horizontal);
    QCOMPARE(ui.splitter->count(), 2);
    QCOMPARE(ui.splitter->widget(0), ui.listView);
    QCOMPARE(ui.splitter->widget(1), ui.tableView);
    QCOMPARE(ui.buttonBox->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QCOMPARE(ui.plusToolButton->minimumSize(), QSize(0, 0));
    const auto policy = [](const QWidget *widget) {
        const QSizePolicy value = widget->sizePolicy();
        return qMakePair(value.horizontalPolicy(), value.verticalPolicy());
    };
    for (const QWidget *spin : {ui.pointStartNumSpin, ui.objectStartNumSpin})
        QCOMPARE(policy(spin), qMakePair(QSizePolicy::Expanding, QSizePolicy::Fixed));
    for (const QWidget *button : {ui.plusToolButton, ui.minusToolButton})
        QCOMPARE(policy(button), qMakePair(QSizePolicy::Preferred, QSizePolicy::Preferred));
    QCOMPARE(policy(ui.splitter), qMakePair(QSizePolicy::Expanding, QSizePolicy::Expanding));
}

void tst_DialogLayout::encodingsAreOffered()
{
    QStringList items;
    for (int i = 0; i < ui.encodingCombo->count(); ++i)
        items.append(ui.encodingCombo->itemText(i));

    QCOMPARE(items, words("@Default @Windows-1251 @IBM866 @UTF-8"));
}

void tst_DialogLayout::buttonBoxIsNotConnected()
{
    const QSignalSpy finished(dialog, &QDialog::finished);
    ui.buttonBox->button(QDialogButtonBox::Ok)->click();
    ui.buttonBox->button(QDialogButtonBox::Cancel)->click();

    QCOMPARE(finished.count(), 0);
}

void tst_DialogLayout::retranslationClearsPointPrefix()
{
    ui.pointPrefEdit->setText(QStringLiteral("н"));
    ui.objectPrefEdit->setText(QStringLiteral("ЗУ"));

    ui.retranslateUi(dialog);

    QCOMPARE(ui.pointPrefEdit->text(), QString());
    QCOMPARE(ui.objectPrefEdit->text(), QStringLiteral("ЗУ"));
}

QTEST_MAIN(tst_DialogLayout)
#include "tst_dialog_layout.moc"
