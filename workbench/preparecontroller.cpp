#include "preparecontroller.h"

#include "noticebar.h"
#include "operationrun.h"
#include "preparepane.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

namespace {

const QString strPrepare = QStringLiteral("Подготовить файл");
const QString strMif = QStringLiteral(".mif");
const QStringList importedSuffixes{QStringLiteral("mif"), QStringLiteral("dxf")};

// Other formats that often hold contours.
const QStringList otherSuffixes{QStringLiteral("tab"),     QStringLiteral("shp"),  QStringLiteral("gpkg"),
                                QStringLiteral("geojson"), QStringLiteral("json"), QStringLiteral("kml"),
                                QStringLiteral("gml")};

constexpr int maxShownKinds = 12; // in a message box

QString nameFilter(const QString &text, const QStringList &suffixes)
{
    QStringList patterns;
    for (const QString &suffix : suffixes)
        patterns += {QStringLiteral("*.") + suffix, QStringLiteral("*.") + suffix.toUpper()};
    return QStringLiteral("%1 (%2)").arg(text, patterns.join(QLatin1Char(' ')));
}

bool isPreparable(const QUrl &url)
{
    const QFileInfo info(url.toLocalFile());
    return info.isFile() && otherSuffixes.contains(info.suffix(), Qt::CaseInsensitive);
}

// The MID file of a prepared MIF file.
QString midOf(const QString &mif)
{
    return mif.chopped(1) + QLatin1Char('d');
}

QString suggestedOutput(const QString &input)
{
    const QFileInfo info(input);
    return info.absoluteDir().filePath(info.completeBaseName() + QStringLiteral("-import.mif"));
}

bool isPairSuffix(const QString &suffix)
{
    return suffix.compare(QLatin1String("mif"), Qt::CaseInsensitive) == 0 ||
           suffix.compare(QLatin1String("mid"), Qt::CaseInsensitive) == 0;
}

// True if the file is the input or the other file of its pair, whose suffix may have capital letters.
bool belongsTo(const QString &name, const QString &input)
{
    const QFileInfo file(name);
    const QFileInfo source(input);
    if (!file.exists())
        return false;
    return file.canonicalFilePath() == source.canonicalFilePath() ||
           (isPairSuffix(source.suffix()) && file.completeBaseName() == source.completeBaseName() &&
            file.canonicalPath() == source.canonicalPath());
}

} // namespace

PrepareController::PrepareController(const QString &program, QWidget *window)
    : QObject(window),
      m_window(window),
      m_pane(new PreparePane(program, window)),
      m_notice(new NoticeBar(window))
{
    addAction("checkAction", QStringLiteral("Про&верить файл…"), &PrepareController::chooseAndCheck);
    m_checkLastAction =
        addAction("checkLastAction", QStringLiteral("Проверить последний фай&л"), &PrepareController::checkLast);
    addAction("prepareAction", QStringLiteral("По&дготовить файл…"), &PrepareController::chooseAndPrepare);
    enableActions();
    connect(m_notice, &NoticeBar::checkRequested, this, [this] { check(m_noticedFile); });
    connect(m_notice, &NoticeBar::prepareRequested, this, [this] { prepare(m_noticedFile); });
    connect(m_pane, &PreparePane::runningChanged, this, &PrepareController::enableActions);
    connect(m_pane, &PreparePane::ended, this, &PrepareController::ended);
    // Queued, so that the import dialog does not run within a signal of the ended program.
    connect(m_pane, &PreparePane::converted, this, &PrepareController::offerImport, Qt::QueuedConnection);
    connect(m_pane, &PreparePane::prepareRequested, this, [this] { prepare(m_pane->fileName()); });
    connect(m_pane, &PreparePane::importRequested, this, &PrepareController::importPrepared);
}

QAction *PrepareController::addAction(const char *name, const QString &text, void (PrepareController::*slot)())
{
    auto *const action = new QAction(text, this);
    action->setObjectName(QLatin1String(name));
    connect(action, &QAction::triggered, this, slot);
    m_actions.append(action);
    return action;
}

// The program handles one file at a time.
void PrepareController::enableActions()
{
    const bool isFree = !m_pane->isRunning();
    for (QAction *const action : m_actions)
        action->setEnabled(isFree);
    m_checkLastAction->setEnabled(isFree && !m_choices.objectFile.isEmpty());
    m_notice->setEnabled(isFree);
}

void PrepareController::beginRun()
{
    m_notice->hide();
}

// A user who sees no objects in the dialog cancels it, so the notice is for cancelled dialogs too.
void PrepareController::finishRun(const OperationRun &run, bool hasResult)
{
    if (run.choices().objectFile.isEmpty())
        return;
    m_choices = run.choices();
    enableActions();
    const bool isCancelled = run.outcome() == OperationRun::Outcome::Cancelled;
    const bool broughtNothing = isCancelled ? !run.hasObjects() : !hasResult;
    if (!broughtNothing || !QFileInfo(m_choices.objectFile).isFile())
        return;
    m_noticedFile = m_choices.objectFile;
    m_notice->showNoObjects(m_noticedFile);
}

bool PrepareController::offerToPrepare(const QList<QUrl> &urls)
{
    const auto url = std::find_if(urls.begin(), urls.end(), isPreparable);
    if (url == urls.end())
        return false;
    m_noticedFile = url->toLocalFile();
    m_notice->showOtherFormat(m_noticedFile);
    return true;
}

QString PrepareController::chooseFile(const QString &title, const QString &filters) const
{
    const QString last = m_pane->fileName().isEmpty() ? m_choices.objectFile : m_pane->fileName();
    return QFileDialog::getOpenFileName(m_window, title, QFileInfo(last).absolutePath(), filters);
}

void PrepareController::chooseAndCheck()
{
    const QString fileName =
        chooseFile(QStringLiteral("Проверить файл"), nameFilter(QStringLiteral("Файлы MIF и DXF"), importedSuffixes));
    if (!fileName.isEmpty())
        check(fileName);
}

void PrepareController::checkLast()
{
    check(m_choices.objectFile);
}

// The import dialog keeps its choices for the next file; only the file of points belongs to one file of objects.
void PrepareController::check(const QString &fileName)
{
    DialogChoices choices = m_choices;
    if (fileName != m_choices.objectFile)
        choices.pointFile.clear();
    choices.objectFile = fileName;
    Q_EMIT started();
    m_pane->check(choices);
}

void PrepareController::chooseAndPrepare()
{
    const QString filter = nameFilter(QStringLiteral("Файлы с контурами"), importedSuffixes + otherSuffixes);
    const QString fileName = chooseFile(strPrepare, filter + QStringLiteral(";;Все файлы (*)"));
    if (!fileName.isEmpty())
        prepare(fileName);
}

void PrepareController::prepare(const QString &fileName)
{
    const QString output = chooseOutput(fileName);
    if (output.isEmpty())
        return;
    Q_EMIT started();
    m_pane->convert(fileName, output, QFileInfo::exists(output) || QFileInfo::exists(midOf(output)));
}

/// Asks for the name of the prepared file. Returns an empty name if the user cancels.
QString PrepareController::chooseOutput(const QString &input) const
{
    QFileDialog dialog(m_window, QStringLiteral("Записать подготовленный файл"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilter(QStringLiteral("Файл MIF (*.mif)"));
    dialog.setDefaultSuffix(QStringLiteral("mif"));
    dialog.setOption(QFileDialog::DontConfirmOverwrite); // it does not know of the MID file
    const QFileInfo suggested(suggestedOutput(input));
    dialog.setDirectory(suggested.absolutePath());
    dialog.selectFile(suggested.fileName());
    while (dialog.exec() == QDialog::Accepted) {
        const QString chosen = dialog.selectedFiles().value(0);
        QString output = chosen.endsWith(strMif) ? chosen : chosen + strMif;
        if (mayWrite(output, input))
            return output;
    }
    return QString();
}

/// Refuses to overwrite \a input, and asks about other files that exist.
bool PrepareController::mayWrite(const QString &output, const QString &input) const
{
    const QStringList files{output, midOf(output)};
    for (const QString &name : files) {
        if (belongsTo(name, input))
            return refuse(
                QStringLiteral("Это сам исходный файл: %1\nВыберите другое имя.").arg(QDir::toNativeSeparators(name)));
    }
    for (const QString &name : files) {
        if (QFileInfo::exists(name))
            return confirm(QStringLiteral("Файл уже есть: %1\nЗаменить его и второй файл пары MIF и MID?")
                               .arg(QDir::toNativeSeparators(name)));
    }
    return true;
}

bool PrepareController::refuse(const QString &text) const
{
    QMessageBox::warning(m_window, strPrepare, text);
    return false;
}

bool PrepareController::confirm(const QString &question) const
{
    const auto answers = QMessageBox::Yes | QMessageBox::No;
    return QMessageBox::question(m_window, strPrepare, question, answers, QMessageBox::No) == QMessageBox::Yes;
}

// If another dialog is open, the user imports the file later, with the pane's button.
void PrepareController::offerImport()
{
    if (QApplication::activeModalWidget() != nullptr)
        return;
    const QString loss = lossText(m_pane->conversion(), maxShownKinds);
    if (loss.isEmpty())
        importPrepared();
    else
        askToImport(loss);
}

void PrepareController::askToImport(const QString &loss)
{
    auto *const box = new QMessageBox(QMessageBox::Warning, strPrepare, QString(), QMessageBox::NoButton, m_window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setText(QStringLiteral("Файл подготовлен, но обратите внимание:\n%1").arg(loss));
    const QPushButton *const import = box->addButton(QStringLiteral("Импортировать"), QMessageBox::AcceptRole);
    box->addButton(QStringLiteral("Не импортировать"), QMessageBox::RejectRole);
    connect(import, &QPushButton::clicked, this, &PrepareController::importPrepared, Qt::QueuedConnection);
    box->open();
}

void PrepareController::importPrepared()
{
    Q_EMIT importRequested(m_pane->conversion().output, m_pane->conversion().encoding);
}
