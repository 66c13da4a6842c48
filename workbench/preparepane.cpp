#include "preparepane.h"

#include "colors.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QUrl>

#include <utility>

namespace {

// Exit statuses of the sub-command check.
constexpr int allComesIn = 0;
constexpr int somethingIsLost = 1;
constexpr int fileIsUnreadable = 3;

QStringList checkArguments(const DialogChoices &choices)
{
    QStringList arguments;
    if (!choices.encoding.isEmpty())
        arguments += {QStringLiteral("--encoding"), choices.encoding};
    // The import continues without a file of points, but a check does not.
    if (!choices.pointFile.isEmpty() && QFileInfo(choices.pointFile).isReadable())
        arguments += {QStringLiteral("--points"), choices.pointFile};
    if (!choices.searchPoints)
        arguments += QStringLiteral("--no-search-points");
    if (!choices.searchObjects)
        arguments += QStringLiteral("--no-search-objects");
    return arguments;
}

QString baseName(const QString &fileName)
{
    return QFileInfo(fileName).fileName();
}

} // namespace

PreparePane::PreparePane(QString program, QWidget *parent)
    : QWidget(parent),
      m_program(std::move(program)),
      m_note(new QLabel(QStringLiteral("Проверки ещё не было"), this)),
      m_cancelButton(addButton("prepareCancelButton", QStringLiteral("Прервать"), QString())),
      m_pageButton(addButton("pageButton", QStringLiteral("Отчёт с рисунком"),
                             QStringLiteral("Открыть отчёт с рисунком в программе просмотра страниц"))),
      m_prepareButton(addButton("prepareButton", QStringLiteral("Подготовить…"),
                                QStringLiteral("Записать рядом файл MIF, который импортируется полностью"))),
      m_importButton(addButton("prepareImportButton", QStringLiteral("Импортировать"),
                               QStringLiteral("Импортировать подготовленный файл"))),
      m_progress(new QProgressBar(this)),
      m_view(new QPlainTextEdit(this))
{
    m_note->setObjectName(QStringLiteral("prepareNote"));
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_progress->setRange(0, 0);
    m_progress->setTextVisible(false);
    m_progress->setMaximumHeight(6);
    m_view->setObjectName(QStringLiteral("prepareView"));
    m_view->setAccessibleName(QStringLiteral("Отчёт о файле"));
    m_view->setReadOnly(true);
    m_view->setTabChangesFocus(true);
    m_view->setUndoRedoEnabled(false);
    m_view->setAcceptDrops(false);
    m_view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));

    auto *const line = new QHBoxLayout;
    line->setContentsMargins(6, 2, 6, 0);
    line->addWidget(m_note, 1);
    for (QPushButton *const button : {m_importButton, m_pageButton, m_prepareButton, m_cancelButton})
        line->addWidget(button);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(line);
    layout->addWidget(m_progress);
    layout->addWidget(m_view);
    showRunning();

    connect(m_cancelButton, &QPushButton::clicked, &m_process, &PrepareProcess::cancel);
    connect(m_pageButton, &QPushButton::clicked, this, &PreparePane::openPage);
    connect(m_prepareButton, &QPushButton::clicked, this, &PreparePane::prepareRequested);
    connect(m_importButton, &QPushButton::clicked, this, &PreparePane::importRequested);
    connect(&m_process, &PrepareProcess::finished, this, &PreparePane::finishCall);
    connect(&m_clock, &QTimer::timeout, this, &PreparePane::showTime);
}

QPushButton *PreparePane::addButton(const char *name, const QString &text, const QString &toolTip)
{
    auto *const button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(name));
    button->setToolTip(toolTip);
    button->hide();
    return button;
}

void PreparePane::check(const DialogChoices &choices)
{
    if (!isRunning())
        start(Task::Check, choices.objectFile,
              QStringList{QStringLiteral("check")} + checkArguments(choices) + pageArguments() +
                  QStringList{choices.objectFile});
}

void PreparePane::convert(const QString &input, const QString &output, bool overwrite)
{
    if (isRunning())
        return;
    QStringList arguments{QStringLiteral("convert"), QStringLiteral("--json")};
    if (overwrite)
        arguments += QStringLiteral("--force");
    start(Task::Convert, input, arguments + QStringList{input, output});
}

// Each check writes its page at once, because the file may have changed when the user opens it.
QStringList PreparePane::pageArguments()
{
    m_page = m_pages.isValid() ? m_pages.filePath(QStringLiteral("check.html")) : QString();
    if (m_page.isEmpty())
        return QStringList();
    QFile::remove(m_page);
    return {QStringLiteral("--html"), m_page};
}

void PreparePane::start(Task task, const QString &fileName, const QStringList &arguments)
{
    m_task = task;
    m_fileName = fileName;
    m_view->clear();
    m_note->setPalette(QPalette());
    for (QPushButton *const button : {m_importButton, m_pageButton, m_prepareButton})
        button->hide();
    m_elapsed.start();
    m_clock.start(1000);
    m_process.start(m_program, arguments);
    showRunning();
    Q_EMIT runningChanged();
}

void PreparePane::stop()
{
    if (!isRunning())
        return;
    m_process.stop();
    m_clock.stop();
    showRunning();
    m_note->setText(cancelledText());
    Q_EMIT runningChanged();
}

void PreparePane::showRunning()
{
    const bool isRunning = m_process.isRunning();
    m_cancelButton->setVisible(isRunning);
    m_progress->setVisible(isRunning);
    if (isRunning)
        showTime();
}

void PreparePane::showTime()
{
    const QString text =
        m_task == Task::Check ? QStringLiteral("Проверяется %1… %2 с") : QStringLiteral("Подготавливается %1… %2 с");
    m_note->setText(text.arg(baseName(m_fileName)).arg(m_elapsed.elapsed() / 1000));
}

QString PreparePane::cancelledText() const
{
    return m_task == Task::Check ? QStringLiteral("Проверка прервана") : QStringLiteral("Подготовка прервана");
}

void PreparePane::finishCall()
{
    m_clock.stop();
    showRunning();
    Q_EMIT runningChanged();
    switch (m_process.end()) {
    case PrepareProcess::End::Cancelled:
        showEnd(cancelledText(), false);
        break;
    case PrepareProcess::End::NotStarted:
        fail(QStringLiteral("Не запускается программа %1").arg(QDir::toNativeSeparators(m_program)));
        break;
    case PrepareProcess::End::Crashed:
        fail(QStringLiteral("Программа importprepare аварийно завершилась на файле %1").arg(baseName(m_fileName)),
             QStringLiteral("Исходный файл не изменён. Возможно, он повреждён или не хватило памяти."));
        break;
    case PrepareProcess::End::Finished:
        m_task == Task::Check ? finishCheck() : finishConversion();
    }
}

void PreparePane::finishCheck()
{
    const QString name = baseName(m_fileName);
    const int status = m_process.exitCode();
    m_prepareButton->setVisible(status != allComesIn && status != fileIsUnreadable);
    if (status != allComesIn && status != somethingIsLost && status != fileIsUnreadable) {
        fail(QStringLiteral("Проверить файл %1 не удалось").arg(name), QString::fromUtf8(m_process.output()));
        return;
    }
    m_view->setPlainText(QString::fromUtf8(m_process.output()));
    m_pageButton->setVisible(QFile::exists(m_page));
    if (status == fileIsUnreadable)
        showEnd(QStringLiteral("Файл %1 не читается").arg(name), true);
    else if (status == somethingIsLost)
        showEnd(QStringLiteral("Файл %1 проверен: есть замечания").arg(name), false);
    else
        showEnd(QStringLiteral("Файл %1 проверен: загрузится всё").arg(name), false);
}

void PreparePane::finishConversion()
{
    Conversion conversion;
    if (m_process.exitCode() != 0 || !readConversion(m_process.output(), conversion)) {
        fail(QStringLiteral("Подготовить файл %1 не удалось").arg(baseName(m_fileName)));
        return;
    }
    m_conversion = conversion;
    m_view->setPlainText(conversionText(conversion));
    m_importButton->show();
    showEnd(QStringLiteral("Файл подготовлен: %1").arg(QDir::toNativeSeparators(conversion.output)), false);
    Q_EMIT converted();
}

// The program's own messages come before the details.
void PreparePane::fail(const QString &text, const QString &details)
{
    QPalette colors;
    colors.setColor(QPalette::WindowText, errorColor(colors));
    m_note->setPalette(colors);
    QStringList texts{QString::fromUtf8(m_process.errors()).trimmed(), details};
    texts.removeAll(QString());
    m_view->setPlainText(texts.join(QLatin1Char('\n')));
    showEnd(text, true);
}

void PreparePane::showEnd(const QString &text, bool isError)
{
    m_note->setText(text);
    Q_EMIT ended(text, isError);
}

void PreparePane::openPage()
{
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(m_page)))
        Q_EMIT ended(
            QStringLiteral("Не нашлось программы, чтобы открыть страницу %1").arg(QDir::toNativeSeparators(m_page)),
            true);
}
