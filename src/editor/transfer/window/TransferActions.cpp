#include "editor/transfer/window/TransferActions.h"

#include "common/MMain.h"
#include "editor/list/TablePane.h"
#include "editor/transfer/table_export.h"
#include "editor/transfer/verdict_texts.h"
#include "editor/transfer/window/FTableImport.h"
#include "files/stored_path.h"
#include "files/whole_file.h"
#include "windows/failure_report.h"
#include "windows/wait_cursor.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace velmora {

TransferActions::TransferActions(MMain& main, TablePane& pane, QWidget* parent)
    : QWidget(parent),
      m_main(main),
      m_pane(pane),
      m_clipboard(main.textOr(u"IMPORT_PASTED"_s, u"Clipboard"_s)),
      m_folder(QDir::homePath())
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_export = add(u"Export"_s, u"Export..."_s);
    m_import = add(u"Import"_s, u"Import..."_s);
    connect(m_export, &QPushButton::clicked, this,
            [this] { reportFailures(m_main, [this] { exportTo(); }); });
    connect(m_import, &QPushButton::clicked, this,
            [this] { reportFailures(m_main, [this] { importFrom(); }); });
}

QPushButton* TransferActions::add(const QString& name, const QString& caption)
{
    auto* button = new QPushButton(caption);
    button->setObjectName(name);
    layout()->addWidget(button);
    return button;
}

void TransferActions::allow(bool any)
{
    m_export->setEnabled(any);
    m_import->setEnabled(any);
}

void TransferActions::exportTo()
{
    const QStringList kinds = {
        m_main.textOr(u"EXPORT_COMMA"_s, u"CSV with commas (*.csv)"_s),
        m_main.textOr(u"EXPORT_SEMICOLON"_s, u"CSV for a spreadsheet, with semicolons (*.csv)"_s)};
    const QString name = m_pane.table().name + ".csv"_L1;
    const auto chosen =
        m_main.prompts.chooseFileToWrite(m_export->text().remove(u'&'), pathIn(m_folder, name), kinds);
    if (!chosen)
        return;
    m_folder = QFileInfo(chosen->path).path();
    const WaitCursor waiting;
    const bool forSpreadsheet = chosen->kind == 1;
    const auto exported = exportTable(m_main, {m_pane.table(), m_pane.access()}, forSpreadsheet ? ';' : ',',
                                      [](qsizetype) { return true; });
    // By its mark a spreadsheet tells the encoding.
    writeWholeFile(chosen->path, forSpreadsheet ? "\xEF\xBB\xBF" + exported->bytes : exported->bytes);
    const QString count = exported->rows == 1
                              ? m_main.messageLine(u"M316"_s)
                              : m_main.messageLine(u"M209"_s, QString::number(exported->rows));
    Q_EMIT told(count + ": "_L1 + QDir::toNativeSeparators(chosen->path));
}

void TransferActions::importFrom()
{
    const QStringList kinds = {m_main.textOr(u"IMPORT_FILES"_s, u"Separated values (*.csv *.tsv *.txt)"_s),
                               m_main.textOr(u"IMPORT_ALL"_s, u"All files (*)"_s)};
    const auto chosen = m_main.prompts.chooseFileToRead(m_import->text().remove(u'&'), m_folder, kinds);
    if (!chosen)
        return;
    m_folder = QFileInfo(chosen->path).path();
    const QString name = QDir::toNativeSeparators(chosen->path);
    const QFileInfo file(chosen->path);
    // A pipe that nobody writes to would hold the program for ever.
    if (file.exists() && !file.isFile())
        return m_main.prompts.show(name + ": "_L1 + m_main.messageLine(u"M400"_s), {});
    const WaitCursor waiting;
    try {
        import(readTableBytes(chosen->path), name);
    } catch (const TableFileError& error) {
        m_main.prompts.show(name + ": "_L1 + VerdictTexts(m_main, {}).text(error.why()), {});
    }
}

void TransferActions::importPasted(const QString& text)
{
    // A text with other separators is one of a file.
    const bool fromSpreadsheet = text.contains(u'\t');
    import(fromSpreadsheet ? pastedTableBytes(text) : text.toUtf8(), m_clipboard);
}

void TransferActions::import(const QByteArray& text, const QString& source)
{
    FTableImport* window = openImport(m_main, {m_pane.table(), m_pane.access()}, text, source, this);
    if (window)
        connect(window, &FTableImport::written, this, &TransferActions::written);
}

} // namespace velmora
