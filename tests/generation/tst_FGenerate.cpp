// The generation window over the real database. What it shares with other windows, tst_BatchWindow tests.
#include "generation/FGenerate.h"
#include "support/controls.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_FGenerate : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void fillsOneListAfterTheOther();
    void remembersLevels_data();
    void remembersLevels();
    void keepsOneLevel();
    void browsesForAFolder();
    void generatesByKeyboard();
    void translatesItsCaptions();

private:
    QComboBox* filter(int number) const { return velmora::filter(*m_window, number); }
    void choose(int number, const QString& text) const { velmora::choose(filter(number), text); }
    QCheckBox* level(int number) const { return control<QCheckBox>(*m_window, u"CLev_%1"_s.arg(number)); }
    QString path() const { return control<QLabel>(*m_window, u"LPath"_s)->text(); }
    void remember(const QString& code, const QString& value) const;
    /// Opens the window with company C1 and its GXP2000 chosen.
    void open();

    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<FGenerate> m_window;
};

void tst_FGenerate::init()
{
    m_window.reset();
    m_database = std::make_unique<TestDatabase>();
    for (const QString& code : {u"101"_s, u"102"_s, u"103"_s})
        m_database->addPhone(u"C1"_s, u"GXP2000"_s, code, "phone "_L1 + code, "000000000"_L1 + code);
    m_database->addPhone(u"C2"_s, u"PAP2"_s, u"201"_s, u"other"_s, u"000000000201"_s);
    m_database->addParameter(u"GXP2000"_s, u"2"_s, u"E"_s, u"x"_s);
    remember(u"$$GENPATH"_s, m_database->folder() + u'\\');
}

void tst_FGenerate::remember(const QString& code, const QString& value) const
{
    m_database->main.connection.execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('C1GXP2000', ?, ?)"_s,
                                        {code, value});
}

void tst_FGenerate::open()
{
    m_window = std::make_unique<FGenerate>(m_database->main);
    m_window->show();
    choose(1, u"C1"_s);
    choose(2, u"GXP"_s);
}

void tst_FGenerate::fillsOneListAfterTheOther()
{
    m_window = std::make_unique<FGenerate>(m_database->main);
    QCOMPARE(filter(1)->count(), 2);
    QCOMPARE(filter(1)->itemText(0), u"C1 \\\\ company"_s);
    QCOMPARE(filter(1)->currentIndex(), -1);
    for (int number = 2; number <= 4; ++number)
        QVERIFY(!filter(number)->isEnabled());
    QVERIFY(!button(*m_window, u"BtPath"_s)->isEnabled());

    open();
    QCOMPARE(filter(2)->count(), 1);
    QVERIFY(button(*m_window, u"BtPath"_s)->isEnabled());
    QCOMPARE(path(), m_database->folder());
    QCOMPARE(filter(3)->currentText(), u"101 \\\\ phone 101"_s);
    QCOMPARE(filter(4)->currentText(), u"103 \\\\ phone 103"_s);
    choose(4, u"102"_s);
    choose(3, u"102"_s);
    QCOMPARE(filter(4)->count(), 2);
    QCOMPARE(filter(4)->currentText(), u"102 \\\\ phone 102"_s);
    choose(3, u"103"_s);
    QCOMPARE(filter(4)->currentText(), u"103 \\\\ phone 103"_s);

    choose(1, u"C2"_s);
    QVERIFY(!button(*m_window, u"Generate"_s)->isEnabled());
    QVERIFY(!filter(3)->isEnabled());
    QCOMPARE(path(), QString());
}

void tst_FGenerate::remembersLevels_data()
{
    columns<QString, QString>("remembered", "boxes");
    row("a blank leaves it", "0 0", "010");
    row("any other character, too long", "x0y0", "101");
    row("too short", "0", "011");
}

void tst_FGenerate::remembersLevels()
{
    QFETCH(QString, remembered);
    remember(u"$$DEFGEN"_s, remembered);
    open();
    QString boxes;
    for (int number = 0; number < 3; ++number)
        boxes += level(number)->isChecked() ? u'1' : u'0';
    QTEST(boxes, "boxes");
    QCOMPARE(filter(3)->isEnabled(), boxes.startsWith(u'1'));
    QVERIFY(button(*m_window, u"Generate"_s)->isEnabled());
}

void tst_FGenerate::keepsOneLevel()
{
    open();
    for (const int number : {0, 1, 2})
        level(number)->click();
    QVERIFY(!level(0)->isChecked());
    QVERIFY(level(2)->isChecked());
    QVERIFY(!filter(3)->isEnabled());
    QTest::keyClick(level(0), Qt::Key_Space);
    QVERIFY(filter(3)->isEnabled());
}

/// Cancelling keeps the phones that were chosen.
void tst_FGenerate::browsesForAFolder()
{
    open();
    choose(3, u"102"_s);
    button(*m_window, u"BtPath"_s)->click();
    QCOMPARE(filter(3)->currentText(), u"102 \\\\ phone 102"_s);
    const auto canStart = [this](const QString& folder) {
        m_database->user.folderAnswer = m_database->folder() + folder;
        button(*m_window, u"BtPath"_s)->click();
        return button(*m_window, u"Generate"_s)->isEnabled();
    };
    QVERIFY(!canStart(u"/missing/$$P"_s));
    QVERIFY(!filter(3)->isEnabled());
    QVERIFY(canStart(u"/phone $$P"_s));
    m_database->user.folderAnswer = u"/"_s;
    QTest::keyClick(button(*m_window, u"BtPath"_s), Qt::Key_Return);
    QCOMPARE(path(), u"/"_s);
    QCOMPARE(filter(3)->currentText(), u"101 \\\\ phone 101"_s);

    // One click remembers folder and levels, and the next window proposes the same.
    level(1)->click();
    for (QPushButton* each : m_window->findChildren<QPushButton*>())
        if (each->text() == "Remember"_L1)
            each->click();
    const QString remembered =
        u"SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = 'C1GXP2000' AND SY_SUBCODE = '%1'"_s;
    QCOMPARE(m_database->value(remembered.arg(u"$$GENPATH"_s)), u"/"_s);
    QCOMPARE(m_database->value(remembered.arg(u"$$DEFGEN"_s)), u"101"_s);
    const FGenerate next(m_database->main);
    QCOMPARE(velmora::filter(next, 2)->currentText(), filter(2)->currentText());
}

void tst_FGenerate::generatesByKeyboard()
{
    open();
    choose(3, u"102"_s);
    QTest::keyClick(filter(4), Qt::Key_Return);
    QCOMPARE(lines(*m_window),
             QStringList({u"M13: 102 - 000000000102.TXT - phone 102"_s, u"M15: "_s,
                          u"M13: 103 - 000000000103.TXT - phone 103"_s, u"M15: "_s, u"M12: "_s}));
    QCOMPARE(control<QListView>(*m_window, u"List1"_s)->currentIndex().row(), 4);
    QVERIFY(QFile::exists(m_database->folder() + "/cfg000000000103"_L1));
    QTest::keyClick(filter(4), Qt::Key_Escape);
    QVERIFY(!m_window->isVisible());
}

void tst_FGenerate::translatesItsCaptions()
{
    for (const QString& row :
         {u"'FGENERATE', 'Titre'"_s, u"'FGENERATE_CLEV_1', 'Société'"_s, u"'FGENERATE_FLAB_2', 'Modèle'"_s})
        m_database->run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_FR', %1)"_s.arg(row));
    m_database->main.language = u"FR"_s;
    open();
    QCOMPARE(m_window->windowTitle(), u"Titre"_s);
    QCOMPARE(level(1)->text(), u"Société"_s);
    QCOMPARE(control<QLabel>(*m_window, u"FLab_2"_s)->text(), u"Modèle"_s);
    QCOMPARE(level(2)->text(), u"Equipment"_s);
    QCOMPARE(m_database->user.shown, QStringList());
}

QTEST_MAIN(tst_FGenerate)
#include "tst_FGenerate.moc"
