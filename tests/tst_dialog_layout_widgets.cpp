#include "ui_dialog.h"

#include <QTest>
#include <QTranslator>

/// The texts and properties that the form gives its widgets on a plain dialog, before anything is read.
class tst_DialogLayoutWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void widgetHasClassAndTexts_data();
    void widgetHasClassAndTexts();
    void propertyIsSet_data();
    void propertyIsSet();
    void sizePolicyIsSet_data();
    void sizePolicyIsSet();
    void onlyTheProcessButtonIsDisabled();
    void encodingsAreOffered();
    void otherEncodingCanBeTyped();
    void buttonBoxOffersOkAndCancel();
    void textsAreTranslatedInTheContextOfTheDialog_data();
    void textsAreTranslatedInTheContextOfTheDialog();
    void retranslationEmptiesThePointPrefix();

private:
    QObject *named(const QString &name) const;

    QDialog *dialog = nullptr;
    Ui::Dialog ui = {};
};

namespace {

QString str(const char *text)
{
    return QString::fromUtf8(text);
}

/// Puts a sign before every text of the dialog's context, and another before those of other contexts.
class SignTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char * /*disambiguation*/, int /*n*/) const override
    {
        return QLatin1String(qstrcmp(context, "Dialog") == 0 ? "@" : "#") + QString::fromUtf8(text);
    }
};

} // namespace

void tst_DialogLayoutWidgets::init()
{
    dialog = new QDialog;
    ui.setupUi(dialog);
}

void tst_DialogLayoutWidgets::cleanup()
{
    delete dialog;
}

QObject *tst_DialogLayoutWidgets::named(const QString &name) const
{
    return name == QLatin1String("Dialog") ? dialog : dialog->findChild<QObject *>(name);
}

void tst_DialogLayoutWidgets::widgetHasClassAndTexts_data()
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
    row("pointStartNumSpin", "QSpinBox", "1", "Начальный номер для автоматической нумерации не найденных точек");
    row("swapXYCheck", "QCheckBox", "Поменять X и Y",
        "Если указано, то координаты вершин X и Y будут поменяны местами");
    row("usePointFileCheck", "QCheckBox", "Точки отдельно",
        "Если указано, то обозначения точек могут быть загружены из отдельного файла");
    row("searchObjectDefsCheck", "QCheckBox", "Искать обозначения объектов",
        "Если указано, то обозначения объектов будут браться с объектов типа полигон или полилиния");
    row("label_6", "QLabel", "Префикс:", "");
    row("objectPrefEdit", "QLineEdit", "", "Префикс объектов, чье обозначение не удалось определить");
    row("label_7", "QLabel", "Начальный номер:", "");
    row("objectStartNumSpin", "QSpinBox", "1",
        "Начальный номер для автоматической нумерации объектов, чье обозначение не удалось определить");
    row("label_8", "QLabel", "Кодировка:", "");
    row("encodingCombo", "QComboBox", "Default",
        "Кодировка обрабатываемых файлов для чтения обозначений, Default - использовать системную по умолчанию");
    row("label", "QLabel", "Заполнить поле:", "");
    row("fieldSpin_0", "QSpinBox", "4", "Номер дополнительно заполняемого поля");
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

void tst_DialogLayoutWidgets::widgetHasClassAndTexts()
{
    QFETCH(QString, widgetClass);
    QFETCH(QString, text);
    QFETCH(QString, toolTip);
    const auto *const widget = dialog->findChild<QWidget *>(str(QTest::currentDataTag()));
    QVERIFY(widget != nullptr);
    const QVariant combo = widget->property("currentText");

    QCOMPARE(QLatin1String(widget->metaObject()->className()), widgetClass);
    QCOMPARE(combo.isValid() ? combo.toString() : widget->property("text").toString(), text);
    QCOMPARE(widget->toolTip(), toolTip);
    QVERIFY(widget->whatsThis().isEmpty() && widget->statusTip().isEmpty());
}

void tst_DialogLayoutWidgets::propertyIsSet_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");

    const auto row = [](const char *name, const char *property, const QVariant &value) {
        QTest::newRow((QByteArray(name) + ' ' + property).constData()) << str(name) << QByteArray(property) << value;
    };
    row("pointPrefEdit", "maxLength", 20);
    row("objectPrefEdit", "maxLength", 32767);
    row("fieldEdit_0", "maxLength", 32767);
    for (const char *spin : {"pointStartNumSpin", "objectStartNumSpin"}) {
        row(spin, "minimum", 1);
        row(spin, "maximum", 999999999);
        row(spin, "value", 1);
    }
    row("fieldSpin_0", "minimum", 1);
    row("fieldSpin_0", "maximum", 20);
    row("fieldSpin_0", "value", 4);
    row("searchPointDefsCheck", "checked", false);
    row("swapXYCheck", "checked", false);
    row("usePointFileCheck", "checked", true);
    row("searchObjectDefsCheck", "checked", false);
    row("updateCheck", "checked", false);
    row("encodingCombo", "editable", true);
    row("encodingCombo", "currentIndex", 0);
    row("plusToolButton", "minimumSize", QSize(0, 0));
    row("splitter", "orientation", int(Qt::Horizontal));
    row("buttonBox", "centerButtons", false);
    row("Dialog", "modal", false);
}

void tst_DialogLayoutWidgets::propertyIsSet()
{
    QFETCH(QString, widget);
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);

    QCOMPARE(named(widget)->property(property.constData()), value);
}

void tst_DialogLayoutWidgets::sizePolicyIsSet_data()
{
    QTest::addColumn<QSizePolicy::Policy>("horizontal");
    QTest::addColumn<QSizePolicy::Policy>("vertical");

    QTest::newRow("pointStartNumSpin") << QSizePolicy::Expanding << QSizePolicy::Fixed;
    QTest::newRow("objectStartNumSpin") << QSizePolicy::Expanding << QSizePolicy::Fixed;
    QTest::newRow("plusToolButton") << QSizePolicy::Preferred << QSizePolicy::Preferred;
    QTest::newRow("minusToolButton") << QSizePolicy::Preferred << QSizePolicy::Preferred;
    QTest::newRow("splitter") << QSizePolicy::Expanding << QSizePolicy::Expanding;
    QTest::newRow("fieldSpin_0") << QSizePolicy::Minimum << QSizePolicy::Fixed; // as the class has it
}

void tst_DialogLayoutWidgets::sizePolicyIsSet()
{
    QFETCH(QSizePolicy::Policy, horizontal);
    QFETCH(QSizePolicy::Policy, vertical);
    const QSizePolicy policy = dialog->findChild<QWidget *>(str(QTest::currentDataTag()))->sizePolicy();

    QCOMPARE(policy.horizontalPolicy(), horizontal);
    QCOMPARE(policy.verticalPolicy(), vertical);
    QCOMPARE(policy.horizontalStretch(), 0);
    QCOMPARE(policy.verticalStretch(), 0);
    QVERIFY(!policy.hasHeightForWidth());
}

void tst_DialogLayoutWidgets::onlyTheProcessButtonIsDisabled()
{
    QStringList disabled;
    for (const QWidget *widget : dialog->findChildren<QWidget *>()) {
        if (!widget->isEnabled())
            disabled.append(widget->objectName());
    }
    QCOMPARE(disabled, QStringList{QStringLiteral("startButton")});
}

void tst_DialogLayoutWidgets::encodingsAreOffered()
{
    QStringList items;
    for (int i = 0; i < ui.encodingCombo->count(); ++i)
        items.append(ui.encodingCombo->itemText(i));
    QCOMPARE(items.join(QLatin1Char(' ')), QStringLiteral("Default Windows-1251 IBM866 UTF-8"));
}

void tst_DialogLayoutWidgets::otherEncodingCanBeTyped()
{
    ui.encodingCombo->lineEdit()->clear();
    QTest::keyClicks(ui.encodingCombo->lineEdit(), QStringLiteral("KOI8-R"));
    QCOMPARE(ui.encodingCombo->currentText(), QStringLiteral("KOI8-R"));
}

void tst_DialogLayoutWidgets::buttonBoxOffersOkAndCancel()
{
    QCOMPARE(ui.buttonBox->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QCOMPARE(ui.buttonBox->buttons().size(), 2);
    QCOMPARE(ui.buttonBox->orientation(), Qt::Horizontal);
}

void tst_DialogLayoutWidgets::textsAreTranslatedInTheContextOfTheDialog_data()
{
    widgetHasClassAndTexts_data();
}

void tst_DialogLayoutWidgets::textsAreTranslatedInTheContextOfTheDialog()
{
    QFETCH(QString, widgetClass);
    QFETCH(QString, text);
    QFETCH(QString, toolTip);
    SignTranslator translator;
    QCoreApplication::installTranslator(&translator);
    ui.retranslateUi(dialog);

    const auto *const widget = dialog->findChild<QWidget *>(str(QTest::currentDataTag()));
    if (!text.isEmpty() && widgetClass != QLatin1String("QComboBox") && widgetClass != QLatin1String("QSpinBox"))
        QCOMPARE(widget->property("text").toString(), QLatin1Char('@') + text);
    if (!toolTip.isEmpty())
        QCOMPARE(widget->toolTip(), QLatin1Char('@') + toolTip);
    QCOMPARE(ui.encodingCombo->itemText(0), QStringLiteral("@Default"));
    QCOMPARE(ui.encodingCombo->itemText(3), QStringLiteral("@UTF-8"));
    QCOMPARE(dialog->windowTitle(), QStringLiteral("@Dialog"));
}

void tst_DialogLayoutWidgets::retranslationEmptiesThePointPrefix()
{
    ui.pointPrefEdit->setText(QStringLiteral("н"));
    ui.objectPrefEdit->setText(QStringLiteral("ЗУ"));

    ui.retranslateUi(dialog);

    QCOMPARE(ui.pointPrefEdit->text(), QString());
    QCOMPARE(ui.objectPrefEdit->text(), QStringLiteral("ЗУ"));
}

QTEST_MAIN(tst_DialogLayoutWidgets)
#include "tst_dialog_layout_widgets.moc"
