#include "desktop/desktop_prompts.h"

#include "platform/shell_version.h"
#include "windows/wait_cursor.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// What a box shows at once; more of it would leave the screen, and its button with it.
constexpr qsizetype mostLines = 15;
constexpr qsizetype mostCharacters = 2000;

/// French sets a blank before these marks, at which no line may end.
QString keptTogether(QString text)
{
    static const QRegularExpression blank(u" (?=[:;?!»])|(?<=«) "_s);
    return text.replace(blank, u"\u00a0"_s);
}

/// The beginning of `text`, as much as a box shows.
QString beginning(const QString& text)
{
    const QString lines = text.section(u'\n', 0, mostLines - 1).left(mostCharacters);
    return lines.size() < text.size() ? lines + u'\u2026' : text;
}

void show(const QString& text, const QString& details)
{
    const NoWaitCursor asking;
    QMessageBox box(QMessageBox::NoIcon, u"Velmora"_s, beginning(text), QMessageBox::Ok,
                    QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box.setInformativeText(beginning(details));
    if (beginning(text) != text || beginning(details) != details)
        box.setDetailedText(text + u'\n' + details);
    box.exec();
}

bool ask(const QString& question, const QString& title, QMessageBox::StandardButton proposal)
{
    const NoWaitCursor asking;
    QMessageBox box(QMessageBox::Question, title, keptTogether(question), QMessageBox::Yes | QMessageBox::No,
                    QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(proposal);
    return box.exec() == QMessageBox::Yes;
}

bool askYesNo(const QString& question, const QString& title)
{
    return ask(question, title, QMessageBox::No);
}

bool askToGoOn(const QString& question, const QString& title)
{
    return ask(question, title, QMessageBox::Yes);
}

std::optional<QString> askText(const QString& question, const QString& proposal)
{
    const NoWaitCursor asking;
    bool accepted = false;
    const QString answer = QInputDialog::getText(QApplication::activeWindow(), u"Velmora"_s, question,
                                                 QLineEdit::Normal, proposal, &accepted);
    return accepted ? std::optional(answer) : std::nullopt;
}

std::optional<QString> askPassword(const QString& question, const QString& title)
{
    const NoWaitCursor asking;
    bool accepted = false;
    const QString answer = QInputDialog::getText(QApplication::activeWindow(), title, question,
                                                 QLineEdit::Password, {}, &accepted);
    return accepted ? std::optional(answer) : std::nullopt;
}

std::optional<QString> chooseFolder(const QString& startFolder)
{
    const NoWaitCursor asking;
    QFileDialog::Options options = QFileDialog::ShowDirsOnly;
#ifdef Q_OS_WIN
    // Before version 5 the shell's own folder dialog has no box to type a path into.
    options.setFlag(QFileDialog::DontUseNativeDialog, !ShellVersionAtLeast(5));
#endif
    const QString folder =
        QFileDialog::getExistingDirectory(QApplication::activeWindow(), startFolder, startFolder, options);
    return folder.isEmpty() ? std::nullopt : std::optional(QDir::toNativeSeparators(folder));
}

/// The file of a dialog that has been closed, if one was chosen in it.
std::optional<ChosenFile> chosenFile(const QString& path, const QString& kind, const QStringList& kinds)
{
    return path.isEmpty() ? std::nullopt
                          : std::optional(ChosenFile{QDir::toNativeSeparators(path), kinds.indexOf(kind)});
}

std::optional<ChosenFile> chooseFileToRead(const QString& title, const QString& folder,
                                           const QStringList& kinds)
{
    QString kind;
    const QString path =
        QFileDialog::getOpenFileName(QApplication::activeWindow(), title, folder, kinds.join(";;"_L1), &kind);
    return chosenFile(path, kind, kinds);
}

std::optional<ChosenFile> chooseFileToWrite(const QString& title, const QString& proposal,
                                            const QStringList& kinds)
{
    QString kind;
    const QString path = QFileDialog::getSaveFileName(QApplication::activeWindow(), title, proposal,
                                                      kinds.join(";;"_L1), &kind);
    return chosenFile(path, kind, kinds);
}

} // namespace

Prompts desktopPrompts()
{
    return {show,
            askYesNo,
            askToGoOn,
            askText,
            askPassword,
            chooseFolder,
            chooseFileToRead,
            chooseFileToWrite,
            [] { QCoreApplication::processEvents(); }};
}

} // namespace velmora
