#include "resultpane.h"

#include "numbertext.h"
#include "xmlhighlighter.h"

#include <QEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

namespace {

// The plug-in begins its documents with a line feed.
int shownStart(const QString &text)
{
    return text.startsWith(QLatin1Char('\n')) ? 1 : 0;
}

QString noteFor(const QString &text)
{
    if (text.isEmpty())
        return QStringLiteral("Результата ещё нет");
    QString size = countText(text.size(), {QStringLiteral("знак"), QStringLiteral("знака"), QStringLiteral("знаков")});
    if (text.size() <= ResultPane::maxShown)
        return size;
    return QStringLiteral("%1; показано начало: %2. Сохраняется весь результат.")
        .arg(size, groupedText(ResultPane::maxShown));
}

} // namespace

ResultPane::ResultPane(QWidget *parent)
    : QWidget(parent),
      m_view(new QPlainTextEdit(this)),
      m_highlighter(new XmlHighlighter(m_view->document())),
      m_note(new QLabel(this)),
      m_saveButton(new QPushButton(QStringLiteral("Сохранить…"), this))
{
    m_view->setObjectName(QStringLiteral("resultView"));
    m_view->setAccessibleName(QStringLiteral("Результат"));
    m_view->setReadOnly(true);
    m_view->setTabChangesFocus(true);
    m_view->setUndoRedoEnabled(false);
    m_view->setAcceptDrops(false);
    m_view->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_highlighter->setColors(palette());
    m_note->setObjectName(QStringLiteral("resultNote"));
    m_note->setWordWrap(true);
    m_saveButton->setObjectName(QStringLiteral("saveResultButton"));
    m_saveButton->setToolTip(QStringLiteral("Сохранить весь результат в файл"));
    connect(m_saveButton, &QPushButton::clicked, this, &ResultPane::saveRequested);

    auto *const line = new QHBoxLayout;
    line->setContentsMargins(6, 2, 6, 0);
    line->addWidget(m_note, 1);
    line->addWidget(m_saveButton);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(line);
    layout->addWidget(m_view);
    setText(QString());
}

void ResultPane::setText(const QString &text)
{
    m_text = text;
    m_view->setPlainText(text.mid(shownStart(text), maxShown));
    m_note->setText(noteFor(text));
    m_saveButton->setEnabled(!text.isEmpty());
}

void ResultPane::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange)
        m_highlighter->setColors(palette());
    QWidget::changeEvent(event);
}
