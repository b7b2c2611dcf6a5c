#include "desktop/desktop_prompts.h"

#include "startup/shell_version.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

void show(const QString& text, const QString& details)
{
    QMessageBox box(QMessageBox::NoIcon, u"Velmora"_s, text, QMessageBox::Ok, QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box.setInformativeText(details);
    box.exec();
}

bool askYesNo(const QString& question, const QString& title)
{
    QMessageBox box(QMessageBox::Question, title, question, QMessageBox::Yes | QMessageBox::No,
                    QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::No); // every question is about something that would be lost or replaced
    return box.exec() == QMessageBox::Yes;
}

std::optional<QString> askText(const QString& question, const QString& proposal)
{
    bool accepted = false;
    const QString answer = QInputDialog::getText(QApplication::activeWindow(), u"Velmora"_s, question,
                                                 QLineEdit::Normal, proposal, &accepted);
    return accepted ? std::optional(answer) : std::nullopt;
}

std::optional<QString> askPassword(const QString& question, const QString& title)
{
    bool accepted = false;
    const QString answer = QInputDialog::getText(QApplication::activeWindow(), title, question,
                                                 QLineEdit::Password, {}, &accepted);
    return accepted ? std::optional(answer) : std::nullopt;
}

std::optional<QString> chooseFolder(const QString& startFolder)
{
    QFileDialog::Options options = QFileDialog::ShowDirsOnly;
#ifdef Q_OS_WIN
    // Before version 5 the shell's own folder dialog has no box to type a path into.
    options.setFlag(QFileDialog::DontUseNativeDialog, !ShellVersionAtLeast(5));
#endif
    const QString folder =
        QFileDialog::getExistingDirectory(QApplication::activeWindow(), startFolder, startFolder, options);
    return folder.isEmpty() ? std::nullopt : std::optional(QDir::toNativeSeparators(folder));
}

} // namespace

Prompts desktopPrompts()
{
    return {show, askYesNo, askText, askPassword, chooseFolder, [] { QCoreApplication::processEvents(); }};
}

} // namespace velmora
