#include "hostwindow.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

namespace {

HostWindow *openWindow = nullptr; // the status callback of the interface has no context argument

} // namespace

HostWindow::HostWindow(ImportGeometryInterface &plugin, const HostOptions &options)
    : m_plugin(plugin),
      m_options(options),
      m_log(new QPlainTextEdit(this)),
      m_result(new QPlainTextEdit(this))
{
    openWindow = this;
    setWindowTitle(QStringLiteral("Импорт объектов"));
    resize(800, 600);
    m_log->setReadOnly(true);
    m_result->setReadOnly(true);
    m_result->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_result->setLineWrapMode(QPlainTextEdit::NoWrap);

    auto *const layout = new QVBoxLayout(this);
    layout->addLayout(createButtons());
    layout->addWidget(new QLabel(QStringLiteral("Сообщения:"), this));
    layout->addWidget(m_log, 1);
    layout->addWidget(new QLabel(QStringLiteral("Результат:"), this));
    layout->addWidget(m_result, 2);
}

HostWindow::~HostWindow()
{
    openWindow = nullptr;
}

QLayout *HostWindow::createButtons()
{
    auto *const layout = new QHBoxLayout;
    const QList<QString> operations = m_plugin.operations();
    for (const QString &op : operations) {
        auto *const button = new QPushButton(op, this);
        connect(button, &QPushButton::clicked, this, [this, op] { runOperation(op); });
        layout->addWidget(button);
    }
    layout->addStretch();
    return layout;
}

void HostWindow::showStatus(const QString &text)
{
    if (openWindow != nullptr)
        openWindow->m_log->appendPlainText(text);
}

void HostWindow::runRequestedOperation()
{
    if (!m_options.operation.isEmpty())
        runOperation(m_options.operation);
}

void HostWindow::runOperation(const QString &op)
{
    m_result->clear();
    m_log->appendPlainText(QStringLiteral("Операция: %1").arg(op));
    const QString result = m_plugin.operation(op, m_options.formName, m_options.objectTable, m_options.pointTable,
                                              m_options.columns, &HostWindow::showStatus);
    m_result->setPlainText(result);
    m_log->appendPlainText(result.isEmpty() ? QStringLiteral("Результата нет.") : QStringLiteral("Результат получен."));
}
