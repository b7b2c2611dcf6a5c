// The message boxes of the desktop program.
#include "desktop/desktop_prompts.h"
#include "support/rows.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QScreen>
#include <QTest>
#include <QTextEdit>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_desktop_prompts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keepsEveryBoxOnTheScreen_data();
    void keepsEveryBoxOnTheScreen();
    void proposesNoOnlyWhereYesLoses();
};

void tst_desktop_prompts::keepsEveryBoxOnTheScreen_data()
{
    const QString refusal = u"Error : INSERT INTO COMPANY VALUES('C1', 'x') refused"_s;
    columns<QString, QString, bool>("text", "details", "scrolls");
    row("short", refusal, "why", false);
    row("as many lines as a large file", QStringList(44'479, refusal).join(u'\n'), "44479", true);
    row("long lines", QStringList(10, refusal.repeated(100)).join(u'\n'), QString(), true);
    row("long details", "text", QStringList(100, refusal).join(u'\n'), true);
}

void tst_desktop_prompts::keepsEveryBoxOnTheScreen()
{
    QFETCH(QString, text);
    QFETCH(QString, details);
    QFETCH(bool, scrolls);
    QSize size;
    QString shown;
    QString all;
    QTimer::singleShot(0, this, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        QVERIFY(box);
        size = box->size();
        shown = box->text() + u'\n' + box->informativeText();
        all = box->detailedText();
        box->accept();
    });
    desktopPrompts().show(text, details);
    QVERIFY(!size.isEmpty());
    const QSize screen = QGuiApplication::primaryScreen()->size();
    QVERIFY2(size.height() < screen.height() && size.width() < screen.width(), qPrintable(shown));
    QCOMPARE(scrolls ? all : shown, text + u'\n' + details);
}

/// Return answers with the proposal.
void tst_desktop_prompts::proposesNoOnlyWhereYesLoses()
{
    const auto byReturn = [this](const auto& ask) {
        QTimer::singleShot(0, this,
                           [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Return); });
        return ask(u"Go on?"_s, u"title"_s);
    };
    QVERIFY(!byReturn(desktopPrompts().askYesNo));
    QVERIFY(byReturn(desktopPrompts().askToGoOn));
}

QTEST_MAIN(tst_desktop_prompts)
#include "tst_desktop_prompts.moc"
