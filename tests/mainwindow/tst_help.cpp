// The About window and the manual browser.
#include "files/whole_file.h"
#include "mainwindow/frmAbout.h"
#include "mainwindow/frmBrowser.h"
#include "mainwindow/system_info.h"
#include "support/controls.h"
#include "support/device_double.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QDir>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_help : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_database = std::make_unique<TestDatabase>(); }
    void showsTheVersion();
    void findsTheSystemInfoTool();
    void formsTheManualsAddress();
    void browses();
    void saysThatAPageIsLoading();
    void opensTheManualOfAnyFolder();
    void forgetsTheTitleOfThePageBefore();
    void needsNoMovingSideways_data();
    void needsNoMovingSideways();

private:
    QString write(const QString& name, const QByteArray& content) const
    {
        const QString path = m_database->folder() + u'/' + name;
        writeWholeFile(path, content);
        return QUrl::fromLocalFile(path).toString();
    }
    static QString page(const frmBrowser& browser)
    {
        return browser.findChild<QTextBrowser*>()->toPlainText();
    }

    std::unique_ptr<TestDatabase> m_database;
};

void tst_help::showsTheVersion()
{
    frmAbout about(m_database->main);
    about.show();
    QCOMPARE(about.windowTitle(), u"À propos de Velmora"_s);
    const QList<QLabel*> labels = about.findChildren<QLabel*>();
    QVERIFY(std::any_of(labels.begin(), labels.end(),
                        [](const QLabel* label) { return label->text() == "Version 1.1.42"_L1; }));
    button(about, u"cmdSysInfo"_s)->click();
    QCOMPARE(m_database->user.shown,
             QStringList(u"Les informations système ne sont pas disponibles actuellement"_s));
    QTest::keyClick(button(about, u"cmdOK"_s), Qt::Key_Return);
    QVERIFY(!about.isVisible());
}

void tst_help::findsTheSystemInfoTool()
{
    const QString here = m_database->folder();
    writeWholeFile(here + "\\MSINFO32.EXE"_L1, "x");
    QString path;
    QString location;
    const auto read = [&](const QString& key, const QString& name, QString& value) {
        if (key == u"SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"_s && name == "PATH"_L1)
            value = path;
        else if (key == u"SOFTWARE\\Microsoft\\Shared Tools Location"_s && name == "MSINFO"_L1)
            value = location;
        return !value.isEmpty();
    };
    location = u"elsewhere"_s;
    QCOMPARE(systemInfoTool(read), QString());
    location = here;
    QCOMPARE(systemInfoTool(read), here + "\\MSINFO32.EXE"_L1);
    path = u"C:/tool.exe"_s;
    QCOMPARE(systemInfoTool(read), path);
}

void tst_help::formsTheManualsAddress()
{
    QCOMPARE(manualAddress(u"C:\\Program Files\\Velmora"_s), u"file://C:/Program Files/Velmora/manual.htm"_s);
    QCOMPARE(manualAddress(u"\\\\server\\velmora"_s), u"file://server/velmora/manual.htm"_s);
}

void tst_help::browses()
{
    const DeviceDouble server(
        inTurn({"HTTP/1.0 200 OK\r\nContent-Type: text/html\r\n\r\n<title>Far</title><p>far page"}));
    const QString first = write(
        u"one.htm"_s, "<title>First</title><p>first page <a href='two.htm#end'>on</a><p><a name='end'>x</a>");
    const QString second =
        write(u"two.htm"_s, "<p>second page" + QByteArray("<p>x").repeated(200) + "<p><a name='end'>end</a>");
    frmBrowser browser(m_database->main);
    auto* addresses = control<QComboBox>(browser, u"cboAddress"_s);
    auto* back = control<QToolButton>(browser, u"Back"_s);
    auto* forward = control<QToolButton>(browser, u"Forward"_s);
    browser.show();
    browser.navigate(first);
    QTRY_VERIFY(page(browser).startsWith("first page"_L1));
    QCOMPARE(browser.windowTitle(), u"First"_s);
    auto* text = browser.findChild<QTextBrowser*>();
    QTest::keyClick(text, Qt::Key_Tab);
    QTest::keyClick(text, Qt::Key_Return);
    QTRY_VERIFY(page(browser).startsWith("second page"_L1));
    QTRY_VERIFY(text->verticalScrollBar()->value() > 0);
    addresses->lineEdit()->setText(u"http://127.0.0.1:%1/x"_s.arg(server.port()));
    QTest::keyClick(addresses->lineEdit(), Qt::Key_Return);
    QTRY_COMPARE(page(browser), u"far page"_s);
    QTRY_COMPARE(browser.windowTitle(), u"Far"_s);
    QVERIFY(!forward->isEnabled());

    back->click();
    QTRY_VERIFY(page(browser).startsWith("second page"_L1));
    QTest::keyClick(text, Qt::Key_Left, Qt::AltModifier);
    QTRY_VERIFY(page(browser).startsWith("first page"_L1));
    QVERIFY(!back->isEnabled());
    forward->click();
    QTRY_VERIFY(page(browser).startsWith("second page"_L1));
    browser.navigate(first);
    QTRY_VERIFY(page(browser).startsWith("first page"_L1));
    QCOMPARE(addresses->count(), 3); // each address once
    QCOMPARE(addresses->currentText(), first);
}

void tst_help::saysThatAPageIsLoading()
{
    const DeviceDouble silent([](QTcpSocket&, const QByteArray&) {});
    frmBrowser browser(m_database->main);
    browser.navigate(u"http://127.0.0.1:%1/"_s.arg(silent.port()));
    QTRY_COMPARE(browser.windowTitle(), u"Traitement en cours..."_s);
    // Another address gives the first one up.
    browser.navigate(write(u"one.htm"_s, "<title>One</title>one"));
    QTRY_COMPARE(browser.windowTitle(), u"One"_s);
    QCOMPARE(page(browser), u"one"_s);

    // A link of the page that is still shown leads on from there.
    write(u"two.htm"_s, "two");
    browser.navigate(u"http://127.0.0.1:%1/"_s.arg(silent.port()));
    Q_EMIT browser.findChild<QTextBrowser*>()->anchorClicked(QUrl(u"two.htm"_s));
    QTRY_COMPARE(page(browser), u"two"_s);

    // An address that failed once is fetched again.
    const QString later = QUrl::fromLocalFile(m_database->folder()).toString() + "/later.htm#x"_L1;
    for (const QString& failing : {later, u"http://:x:/"_s}) {
        browser.navigate(failing);
        QTRY_VERIFY(page(browser).startsWith("This page can't be shown"_L1));
        QTRY_COMPARE(browser.windowTitle(), u"This page can't be shown"_s);
    }
    write(u"later.htm"_s, "later");
    browser.navigate(later);
    QTRY_COMPARE(page(browser), u"later"_s);
}

void tst_help::opensTheManualOfAnyFolder()
{
#ifdef Q_OS_WIN
    const QString name = u"a#b c 100%25 \u00e9"_s;
#else
    const QString name = u"a#b?c 100%25 \u00e9"_s;
#endif
    QVERIFY(QDir(m_database->folder()).mkdir(name));
    write(name + "/manual.htm"_L1, "Caf\xe9"); // Windows-1252 is read as well
    frmBrowser browser(m_database->main);
    browser.navigate(manualAddress(m_database->folder() + u'/' + name));
    QTRY_COMPARE(page(browser), u"Caf\u00e9"_s);
}

void tst_help::forgetsTheTitleOfThePageBefore()
{
    const DeviceDouble server(inTurn({"HTTP/1.0 200 OK\r\nContent-Type: text/html\r\n\r\nno title"}));
    QMdiArea frame;
    frmBrowser browser(m_database->main);
    const QMdiSubWindow* child = frame.addSubWindow(&browser);
    frame.show();
    browser.navigate(write(u"one.htm"_s, "<title>One</title>one"));
    QTRY_COMPARE(child->windowTitle(), u"One"_s);
    const QString address = u"http://127.0.0.1:%1/"_s.arg(server.port());
    browser.navigate(address);
    QTRY_COMPARE(page(browser), u"no title"_s);
    QCOMPARE(child->windowTitle(), address);
}

void tst_help::needsNoMovingSideways_data()
{
    columns<QString>("language");
    row("English", "en");
    row("French", "fr");
}

void tst_help::needsNoMovingSideways()
{
    QFETCH(QString, language);
    frmBrowser browser(m_database->main);
    browser.show();
    browser.navigate("file://"_L1 + QStringLiteral(VELMORA_SHARE) + "/manual/"_L1 + language + ".htm"_L1);
    QTRY_VERIFY(page(browser).size() > 10'000);
    const QTextBrowser* text = browser.findChild<QTextBrowser*>();
    const auto height = [text] { return text->document()->size().height(); };
    for (const int width : {820, 600, 820}) {
        const qreal before = height();
        browser.resize(width, 500);
        QTRY_VERIFY(width == 820 || height() != before);
        QTRY_COMPARE(text->horizontalScrollBar()->maximum(), 0);
    }
    // Pictures that have room are as large as they are.
    const auto wide = [&](const QString& name) {
        const QUrl address = QUrl::fromLocalFile(QStringLiteral(VELMORA_SHARE "/manual/") + name + u'-' +
                                                 language + ".png"_L1);
        return text->document()->resource(QTextDocument::ImageResource, address).value<QImage>().width();
    };
    QTRY_COMPARE(wide(u"FRgen"_s), 533);
    QTRY_VERIFY(wide(u"FParameters-list"_s) > 700);
}

QTEST_MAIN(tst_help)
#include "tst_help.moc"
