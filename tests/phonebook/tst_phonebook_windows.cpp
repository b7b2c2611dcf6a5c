// The three phone-book windows, driven with mouse and keys.
#include "files/whole_file.h"
#include "phonebook/windows/FPBExp.h"
#include "phonebook/windows/FPBGen.h"
#include "phonebook/windows/FPBImp.h"
#include "support/controls.h"
#include "support/test_database.h"

#include <QComboBox>
#include <QDesktopServices>
#include <QFile>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_phonebook_windows : public QObject {
    Q_OBJECT

public Q_SLOTS:
    void open(const QUrl& url) { m_opened << url.toLocalFile(); }

private Q_SLOTS:
    void init();
    void cleanup();
    void generates();
    void imports();
    void exports();

private:
    /// Shows the window with a company chosen, and a model where it has a list of them.
    template <typename Window> void show()
    {
        m_window = std::make_unique<Window>(m_database->main);
        m_window->show();
        choose(filter(*m_window, 1), u"C1"_s);
        if (QComboBox* models = filter(*m_window, 2))
            choose(models, u"GXP2000"_s);
        QCOMPARE(folder(), m_database->folder());
    }
    void click(const QString& name) const { QTest::mouseClick(button(*m_window, name), Qt::LeftButton); }
    QString folder() const { return control<QLabel>(*m_window, u"LPath"_s)->text(); }
    QString lastLine() const { return lines(*m_window).value(lines(*m_window).size() - 1); }
    QByteArray written(const QString& name) const { return readWholeFile(m_database->folder() + name); }

    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<QWidget> m_window;
    QStringList m_opened;
};

void tst_phonebook_windows::init()
{
    m_database = std::make_unique<TestDatabase>();
    m_database->addPhone(u"C1"_s, u"GXP2000"_s, u"101"_s, u"Hall"_s, u"000000000101"_s);
    for (const QString& flag : {u"V"_s, u"W"_s, u"H"_s})
        m_database->run("INSERT INTO CREATION_FLAGS VALUES('"_L1 + flag + "', 'x', 'Y')"_L1);
    for (const QString& row :
         {u"'C1GXP2000', '$$PBGEN'"_s, u"'C1GXP2000', '$$PBIMP'"_s, u"'C1', '$$PBExp'"_s})
        m_database->run(u"INSERT INTO SYSTEM_PARAMETERS VALUES(%1, '%2\\')"_s.arg(row, m_database->folder()));
    m_database->run(u"INSERT INTO PHONE_BOOK VALUES('C1', '201', 'One', 'V', '', '', '', '')"_s);
    m_opened.clear();
}

void tst_phonebook_windows::cleanup()
{
    m_window.reset();
    m_database.reset();
}

void tst_phonebook_windows::generates()
{
    show<FPBGen>();
    QVERIFY(!filter(*m_window, 3));
    const auto* progress = control<QProgressBar>(*m_window, u"Progress"_s);
    QTest::keyClick(filter(*m_window, 2), Qt::Key_Return);
    QVERIFY(written(u"/gs_phonebook.xml"_s).contains("<phonenumber>201<"));
    QCOMPARE(lastLine(), u"201 - One"_s);
    QCOMPARE(progress->text(), u"1 / 1"_s);

    // Nothing to do is not endless work, and an empty book is one.
    m_database->run(u"DELETE FROM PHONE_BOOK"_s);
    click(u"Ok"_s);
    QVERIFY(!progress->isVisible());
    QCOMPARE(written(u"/gs_phonebook.xml"_s),
             "<?xml version=\"1.0\"?>\r\n<AddressBook>\r\n</AddressBook>\r\n"_ba);

    // Another company's folder waits for its model.
    choose(filter(*m_window, 1), u"C1"_s);
    QVERIFY(!button(*m_window, u"Ok"_s)->isEnabled());
}

void tst_phonebook_windows::imports()
{
    writeWholeFile(m_database->folder() + "/confUsers.ini"_L1,
                   "[Users]\n[User1]\nName=A\nSurname=B\nExtension=201\nend\n");
    show<FPBImp>();
    click(u"Ok"_s);
    QCOMPARE(lastLine(), u"0 added, 1 updated, 0 ignored, 0 refused, 0 hidden"_s);
    QCOMPARE(m_database->user.shown.size(), 1);

    // Another folder, chosen by the user, is not remembered.
    m_database->user.folderAnswer = u"/no/such"_s;
    click(u"BtPath"_s);
    click(u"Ok"_s);
    QCOMPARE(m_database->user.shown.last(), u"M7: /no/such"_s);
    choose(filter(*m_window, 2), u"GXP2000"_s);
    QCOMPARE(folder(), m_database->folder());
}

void tst_phonebook_windows::exports()
{
    QDesktopServices::setUrlHandler(u"file"_s, this, "open");
    show<FPBExp>();
    QVERIFY(!filter(*m_window, 2));
    click(u"Ok"_s);
    QCOMPARE(written(u"/Phone_Book.csv"_s), "C1;201;One;V;;;;\r\n"_ba);
    QCOMPARE(m_opened, QStringList());

    control<QRadioButton>(*m_window, u"Workbook"_s)->click();
    click(u"Ok"_s);
    QCOMPARE(m_opened, QStringList(m_database->folder() + "/Phone_Book.xlsx"_L1));
    QVERIFY(QFile::exists(m_opened.first()));
    QDesktopServices::unsetUrlHandler(u"file"_s);
}

QTEST_MAIN(tst_phonebook_windows)
#include "tst_phonebook_windows.moc"
