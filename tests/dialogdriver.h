#pragma once

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

/// Uses the import dialog as a person does, by mouse and keys; its widgets are known by their names alone.
class DialogDriver
{
public:
    /// How an editor in a view is opened.
    enum class Open { WithF2, WithDoubleClick };

    explicit DialogDriver(QWidget *dialog) : m_dialog(dialog) {}

    QWidget *dialog() const { return m_dialog; }

    template <typename Widget>
    Widget *find(const char *name) const
    {
        auto *const widget = m_dialog->findChild<Widget *>(QLatin1String(name));
        if (widget == nullptr)
            qFatal("the dialog has no widget %s of this class", name);
        return widget;
    }

    QAbstractItemView *list() const { return find<QAbstractItemView>("listView"); }
    QAbstractItemView *table() const { return find<QAbstractItemView>("tableView"); }

    /// Replaces the text of a line edit.
    void type(const char *edit, const QString &text) const { typeInto(find<QLineEdit>(edit), text); }
    void setNumber(const char *spin, int number) const { find<QSpinBox>(spin)->setValue(number); }

    void setChecked(const char *check, bool checked) const
    {
        if (find<QCheckBox>(check)->isChecked() != checked)
            find<QCheckBox>(check)->click();
    }

    void press(const char *button) const { QTest::mouseClick(find<QAbstractButton>(button), Qt::LeftButton); }

    /// Chooses an entry of the list of encodings.
    void chooseEncoding(const QString &name) const
    {
        auto *const combo = find<QComboBox>("encodingCombo");
        const int entry = combo->findText(name);
        if (entry < 0)
            qFatal("the dialog does not offer the encoding %s", qPrintable(name));
        combo->setCurrentIndex(entry);
    }

    /// Writes the name of an encoding by hand.
    void typeEncoding(const QString &name) const { typeInto(find<QComboBox>("encodingCombo")->lineEdit(), name); }

    void process(const QString &objectFile) const
    {
        type("objectFileNameEdit", objectFile);
        press("startButton");
    }

    void accept() const { pressInBox(QDialogButtonBox::Ok); }
    void cancel() const { pressInBox(QDialogButtonBox::Cancel); }

    /// Clicks a cell, which makes it the current one.
    void click(QAbstractItemView *view, int row, int column = 0) const
    {
        const QModelIndex cell = view->model()->index(row, column);
        view->scrollTo(cell);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, view->visualRect(cell).center());
    }

    /// Opens the editor of a cell, types \a text over what stands there and presses Enter. False when none opens.
    bool edit(QAbstractItemView *view, int row, int column, const QString &text, Open open = Open::WithF2) const
    {
        click(view, row, column);
        const QPoint cell = view->visualRect(view->model()->index(row, column)).center();
        if (open == Open::WithF2)
            QTest::keyClick(view, Qt::Key_F2);
        else
            QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, cell);
        QLineEdit *const editor = openEditor(view);
        if (editor == nullptr)
            return false;
        typeInto(editor, text);
        QTest::keyClick(editor, Qt::Key_Return);
        // The text is taken and the editor removed from the event loop.
        QCoreApplication::processEvents();
        return openEditor(view) == nullptr;
    }

    /// What a view shows: a text a row, with bars between its cells. Empty without a model.
    static QStringList shown(const QAbstractItemView *view)
    {
        QStringList rows;
        const QAbstractItemModel *const model = view->model();
        for (int row = 0; model != nullptr && row < model->rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < model->columnCount(); ++column)
                cells.append(model->index(row, column).data().toString());
            rows.append(cells.join(QLatin1Char('|')));
        }
        return rows;
    }

    /// The rows of a view whose cells in \a column have the background \a color.
    static QList<int> coloured(const QAbstractItemView *view, const QColor &color, int column = 0)
    {
        QList<int> rows;
        for (int row = 0; row < view->model()->rowCount(); ++row) {
            const QVariant brush = view->model()->index(row, column).data(Qt::BackgroundRole);
            if (brush.value<QBrush>() == QBrush(color))
                rows.append(row);
        }
        return rows;
    }

private:
    // QTest::keyClicks() knows no Cyrillic letters.
    static void typeInto(QLineEdit *edit, const QString &text)
    {
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        for (const QChar &letter : text)
            QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, letter, Qt::NoModifier);
    }

    static QLineEdit *openEditor(const QAbstractItemView *view)
    {
        const auto editors = view->viewport()->findChildren<QLineEdit *>();
        for (QLineEdit *const editor : editors) {
            if (editor->isVisible())
                return editor;
        }
        return nullptr;
    }

    void pressInBox(QDialogButtonBox::StandardButton button) const
    {
        QTest::mouseClick(find<QDialogButtonBox>("buttonBox")->button(button), Qt::LeftButton);
    }

    QWidget *m_dialog;
};
