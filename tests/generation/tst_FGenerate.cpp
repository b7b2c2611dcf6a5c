// The generation window, driven with mouse and keys over the real database.
#include "files/whole_file.h"
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
    void cleanup();
    void fillsOneListAfterTheOther();
    void remembersLevelsAndFolder_data();
    void remembersLevelsAndFolder();
    void keepsOneLevel();
    void browsesForAFolder();
    void generatesByKeyboard();
    void translatesItsCaptions();

private:
    QComboBox* filter(int number) const { return velmora::filter(*m_window, number); }
    QCheckBox* level(int number) const { return m_window->findChild<QCheckBox*>(u"CLev_%1"_s.arg(number)); }
    QPushButton* button(const QString& name) const { return velmora::button(*m_window, name); }
    QString path() const { return m_window->findChild<QLabel*>(u"LPath"_s)->text(); }
    QStringList lines() const { return velmora::lines(*m_window); }
    QStringList files() const { return QDir(m_database->folder()).entryList({u"cfg*"_s}, QDir::Files); }
    void remember(const QString& code, const QString& value) const;
    void choose(int number, const QString& text) const;
    /// Opens the window with company C1 and its GXP2000 chosen.
    void open();

    std::unique_ptr<TestDatabase> m_database;
    FGenerate* m_window = nullptr;
};

void tst_FGenerate::init()
{
    m_database = std::make_unique<TestDatabase>();
    for (const QString& code : {u"101"_s, u"102"_s, u"103"_s})
        m_database->addPhone(u"C1"_s, u"GXP2000"_s, code, "phone "_L1 + code, "000000000"_L1 + code);
    m_database->addPhone(u"C2"_s, u"PAP2"_s, u"201"_s, u"other"_s, u"000000000201"_s);
    m_database->addParameter(u"GXP2000"_s, u"2"_s, u"E"_s, u"x"_s);
    m_database->user.onEvents = [] { QCoreApplication::processEvents(); };
}

void tst_FGenerate::cleanup()
{
    delete m_window;
    m_window = nullptr;
}

void tst_FGenerate::remember(const QString& code, const QString& value) const
{
    m_database->main.connection.execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('C1GXP2000', ?, ?)"_s,
                                        {code, value});
}

/// Moves through the drop-down list with the arrow keys until it shows the entry.
void tst_FGenerate::choose(int number, const QString& text) const
{
    QComboBox* list = filter(number);
    const int wanted = list->findText(text, Qt::MatchStartsWith);
    QVERIFY2(wanted >= 0, qPrintable(text));
    while (list->currentIndex() != wanted)
        QTest::keyClick(list, list->currentIndex() < wanted ? Qt::Key_Down : Qt::Key_Up);
}

void tst_FGenerate::open()
{
    m_window = new FGenerate(m_database->main);
    m_window->show();
    choose(1, u"C1"_s);
    choose(2, u"GXP"_s);
}

void tst_FGenerate::fillsOneListAfterTheOther()
{
    m_window = new FGenerate(m_database->main);
    m_window->show();
    QCOMPARE(filter(1)->count(), 2);
    QCOMPARE(filter(1)->itemText(0), u"C1 \\\\ company"_s);
    QCOMPARE(filter(1)->currentIndex(), -1);
    for (int number = 2; number <= 4; ++number)
        QVERIFY(!filter(number)->isEnabled());
    QVERIFY(!button(u"Generate"_s)->isEnabled());
    QVERIFY(!button(u"BtPath"_s)->isEnabled());

    remember(u"$$GENPATH"_s, m_database->folder());
    choose(1, u"C1"_s);
    QCOMPARE(filter(2)->count(), 1);
    choose(2, u"GXP"_s);
    QVERIFY(button(u"BtPath"_s)->isEnabled());
    QVERIFY(button(u"Generate"_s)->isEnabled());
    QCOMPARE(filter(3)->currentText(), u"101 \\\\ phone 101"_s);
    QCOMPARE(filter(4)->currentText(), u"103 \\\\ phone 103"_s);
    choose(4, u"102"_s);
    choose(3, u"102"_s);
    QCOMPARE(filter(4)->count(), 2);
    QCOMPARE(filter(4)->currentText(), u"102 \\\\ phone 102"_s);
    choose(3, u"103"_s);
    QCOMPARE(filter(4)->currentText(), u"103 \\\\ phone 103"_s);

    choose(1, u"C2"_s);
    QVERIFY(!button(u"Generate"_s)->isEnabled());
    QVERIFY(!filter(3)->isEnabled());
    QCOMPARE(path(), QString());
}

void tst_FGenerate::remembersLevelsAndFolder_data()
{
    columns<QString, QString>("remembered", "boxes");
    row("nothing", "", "111");
    row("all", "111", "111");
    row("a blank leaves it", "0 0", "010");
    row("any other character", "x0y", "101");
    row("too short", "0", "011");
    row("too long", "1101111", "110");
}

void tst_FGenerate::remembersLevelsAndFolder()
{
    QFETCH(QString, remembered);
    remember(u"$$DEFGEN"_s, remembered);
    remember(u"$$GENPATH"_s, m_database->folder() + u'\\');
    open();
    QString boxes;
    for (int number = 0; number < 3; ++number)
        boxes += level(number)->isChecked() ? u'1' : u'0';
    QTEST(boxes, "boxes");
    QCOMPARE(path(), m_database->folder());
    QCOMPARE(filter(3)->isEnabled(), boxes.startsWith(u'1'));
    QVERIFY(button(u"Generate"_s)->isEnabled());
}

void tst_FGenerate::keepsOneLevel()
{
    remember(u"$$GENPATH"_s, m_database->folder());
    open();
    for (const int number : {0, 1, 2})
        QTest::mouseClick(level(number), Qt::LeftButton, {}, QPoint(8, level(number)->height() / 2));
    QVERIFY(!level(0)->isChecked());
    QVERIFY(!level(1)->isChecked());
    QVERIFY(level(2)->isChecked());
    QVERIFY(!filter(3)->isEnabled());
    QTest::keyClick(level(0), Qt::Key_Space);
    QVERIFY(filter(3)->isEnabled());
}

void tst_FGenerate::browsesForAFolder()
{
    open();
    QVERIFY(!button(u"Generate"_s)->isEnabled());
    m_database->user.folderAnswer = m_database->folder();
    QTest::keyClick(button(u"BtPath"_s), Qt::Key_Return);
    QCOMPARE(path(), m_database->folder());
    QVERIFY(button(u"Generate"_s)->isEnabled());
    QCOMPARE(m_database->value(u"SELECT count(*) FROM SYSTEM_PARAMETERS WHERE SY_SUBCODE = '$$GENPATH'"_s),
             u"0"_s);

    // One click remembers folder and levels.
    QTest::mouseClick(level(1), Qt::LeftButton, {}, QPoint(8, level(1)->height() / 2));
    for (QPushButton* each : m_window->findChildren<QPushButton*>())
        if (each->text() == "Remember"_L1)
            QTest::mouseClick(each, Qt::LeftButton);
    const QString remembered =
        u"SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = 'C1GXP2000' AND SY_SUBCODE = '%1'"_s;
    QCOMPARE(m_database->value(remembered.arg(u"$$GENPATH"_s)), m_database->folder());
    QCOMPARE(m_database->value(remembered.arg(u"$$DEFGEN"_s)), u"101"_s);
    // The next window proposes the same.
    FGenerate next(m_database->main);
    QCOMPARE(velmora::filter(next, 2)->currentText(), filter(2)->currentText());

    // Cancelling keeps what was chosen.
    choose(3, u"102"_s);
    m_database->user.folderAnswer.reset();
    QTest::mouseClick(button(u"BtPath"_s), Qt::LeftButton);
    QCOMPARE(filter(3)->currentText(), u"102 \\\\ phone 102"_s);
    QCOMPARE(lines(), QStringList());
}

void tst_FGenerate::generatesByKeyboard()
{
    remember(u"$$GENPATH"_s, m_database->folder());
    open();
    choose(3, u"102"_s);
    QTest::keyClick(filter(4), Qt::Key_Return);
    QCOMPARE(files(), QStringList({u"cfg000000000102"_s, u"cfg000000000103"_s}));
    QCOMPARE(lines(), QStringList({u"M13: 102 - 000000000102.TXT - phone 102"_s, u"M15: "_s,
                                   u"M13: 103 - 000000000103.TXT - phone 103"_s, u"M15: "_s, u"M12: "_s}));
    QCOMPARE(m_window->findChild<QListWidget*>(u"List1"_s)->currentRow(), 4);
    const auto* progress = m_window->findChild<QProgressBar*>();
    QCOMPARE(progress->text(), u"2 / 2"_s);

    // The focus comes back from Stop, so that Return does not close the window.
    button(u"Generate"_s)->setFocus();
    QTest::keyClick(button(u"Generate"_s), Qt::Key_Return);
    QVERIFY(button(u"Generate"_s)->hasFocus());
    QVERIFY(button(u"Generate"_s)->isEnabled());
    QTest::keyClick(filter(4), Qt::Key_Escape);
    QVERIFY(!m_window->isVisible());
}

void tst_FGenerate::translatesItsCaptions()
{
    for (const auto& [code, text] : {std::pair(u"FGENERATE"_s, u"Titre"_s),
                                     {u"FGENERATE_CLEV_1"_s, u"Société"_s},
                                     {u"FGENERATE_FLAB_2"_s, u"Modèle"_s},
                                     {u"CANCEL_END"_s, u"Fermer"_s}})
        m_database->main.connection.execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_FR', ?, ?)"_s,
                                            {code, text});
    m_database->main.language = u"FR"_s;
    m_window = new FGenerate(m_database->main);
    QCOMPARE(m_window->windowTitle(), u"Titre"_s);
    QCOMPARE(level(1)->text(), u"Société"_s);
    QCOMPARE(m_window->findChild<QLabel*>(u"FLab_2"_s)->text(), u"Modèle"_s);
    QCOMPARE(button(u"Cancel"_s)->text(), u"Fermer"_s);
    QCOMPARE(level(2)->text(), u"Equipment"_s);
    QVERIFY(m_database->user.shown.isEmpty());
}

QTEST_MAIN(tst_FGenerate)
#include "tst_FGenerate.moc"
