// The window with the status of phones, over the real database and a folder.
#include "files/whole_file.h"
#include "status/window/FStatus.h"
#include "support/controls.h"
#include "support/device_double.h"
#include "support/test_database.h"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_FStatus : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void comparesFiltersAndGenerates();
    void leadsToTheEditorAndBack();
    void restartsTheSelected();

private:
    QTreeView* phones() const { return control<QTreeView>(*m_window, u"Phones"_s); }
    /// The states that are listed, after the codes of their phones.
    QString listed() const;
    void refresh() const;

    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<DeviceDouble> m_device;
    std::unique_ptr<FStatus> m_window;
};

/// Three PAP2, of which 102 has a file with an older value, and 103 none.
void tst_FStatus::init()
{
    m_window.reset();
    m_database = std::make_unique<TestDatabase>();
    for (const QString& code : {u"101"_s, u"102"_s, u"103"_s})
        m_database->addPhone(u"C1"_s, u"PAP2"_s, code, "phone "_L1 + code, "000000000"_L1 + code);
    m_database->addParameter(u"PAP2"_s, u"ip"_s, u"E"_s, u"127.0.0.1"_s);
    m_database->addParameter(u"PAP2"_s, u"password"_s, u"E"_s, u"secret"_s);
    m_database->addParameter(u"PAP2"_s, u"server"_s, u"C"_s, u""_s);
    for (const QString& row : {u"'$$PAP2', '$$IP1', 'ip'"_s, u"'$$PAP2', '$$EPWD', 'password'"_s,
                               QString("'C1PAP2', '$$GENPATH', '"_L1 + m_database->folder() + u'\'')})
        m_database->run("INSERT INTO SYSTEM_PARAMETERS VALUES("_L1 + row + u')');
    m_database->run(u"INSERT INTO COMPANY_PARAMETERS VALUES('C1', 'PAP2', 'server', 'new')"_s);
    const QByteArray file = "<flat-profile>\r\n<ip>127.0.0.1</ip>\r\n<password>secret</password>\r\n"
                            "<server>new</server>\r\n</flat-profile>\r\n";
    writeWholeFile(QDir(m_database->folder()).filePath(u"000000000101.txt"_s), file);
    writeWholeFile(QDir(m_database->folder()).filePath(u"000000000102.txt"_s),
                   QByteArray(file).replace("new", "old"));
    m_device = std::make_unique<DeviceDouble>(pap2Device("secret"));
    m_window = std::make_unique<FStatus>(m_database->main, m_device->port());
    m_window->show();
    choose(filter(*m_window, 1), u"C1"_s);
}

void tst_FStatus::refresh() const
{
    QTest::mouseClick(button(*m_window, u"Refresh"_s), Qt::LeftButton);
}

QString tst_FStatus::listed() const
{
    QStringList rows;
    const QAbstractItemModel* model = phones()->model();
    for (int row = 0; row < model->rowCount(); ++row)
        rows << model->index(row, PhoneTable::Code).data().toString() + u' ' +
                    model->index(row, PhoneTable::State).data().toString();
    return rows.join(u'|');
}

void tst_FStatus::comparesFiltersAndGenerates()
{
    refresh();
    QCOMPARE(listed(), u"101 current|102 different|103 missing"_s);
    auto* states = control<QComboBox>(*m_window, u"StateFilter"_s);
    choose(states, u"different"_s);
    QCOMPARE(states->currentText(), u"different (1)"_s);
    QCOMPARE(listed(), u"102 different"_s);
    phones()->setCurrentIndex(phones()->model()->index(0, 0));
    const QTreeWidgetItem* difference =
        control<QTreeWidget>(*m_window, u"PageDifferences"_s)->topLevelItem(0);
    QVERIFY(difference);
    QCOMPARE(difference->text(0) + difference->text(2) + difference->text(3), u"serveroldnew"_s);

    states->setCurrentIndex(0);
    QTest::keyClicks(control<QLineEdit>(*m_window, u"FindText"_s), u"PHONE 103"_s);
    QCOMPARE(listed(), u"103 missing"_s);
    control<QLineEdit>(*m_window, u"FindText"_s)->clear();
    phones()->selectAll();
    QTest::mouseClick(button(*m_window, u"CopyRows"_s), Qt::LeftButton);
    QCOMPARE(QGuiApplication::clipboard()->text().section(u'\n', 1, 1),
             u"102\tPAP2\t000000000102.txt\tdifferent\t1\t"_s);
    QPushButton* generate = button(*m_window, u"GenerateRows"_s);
    QVERIFY2(generate->text().contains("(3)"_L1), qPrintable(generate->text()));
    QTest::mouseClick(generate, Qt::LeftButton);
    QCOMPARE(listed(), u"101 current|102 current|103 current"_s);
    QVERIFY(lines(*m_window).contains(u"M12: "_s));
}

void tst_FStatus::leadsToTheEditorAndBack()
{
    m_window->showPhone(u"C1"_s, u"103"_s);
    QCOMPARE(phones()->currentIndex().data().toString(), u"103"_s);
    control<QTabWidget>(*m_window, u"Pages"_s)->setCurrentIndex(1);
    auto* values = control<QTreeWidget>(*m_window, u"PageValues"_s);
    QCOMPARE(values->topLevelItemCount(), 3);
    QString table;
    QHash<QString, QString> record;
    connect(m_window.get(), &FStatus::recordWanted, this,
            [&](const QString& wanted, const QHash<QString, QString>& key) {
                table = wanted;
                record = key;
            });
    values->setCurrentItem(values->topLevelItem(2));
    values->setFocus();
    QTest::keyClick(values, Qt::Key_Return);
    QTRY_COMPARE(table, u"COMPANY_PARAMETERS"_s);
    QCOMPARE(record, (QHash<QString, QString>{
                         {u"CO_CODE"_s, u"C1"_s}, {u"EQ_CODE"_s, u"PAP2"_s}, {u"PA_CODE"_s, u"server"_s}}));
}

void tst_FStatus::restartsTheSelected()
{
    refresh();
    phones()->setCurrentIndex(phones()->model()->index(1, 0));
    const auto restartedAt = [this](int row) {
        return phones()->model()->index(row, PhoneTable::LastRestart).data().toString();
    };
    QCOMPARE(restartedAt(1), QString());
    QTest::mouseClick(button(*m_window, u"RestartRows"_s), Qt::LeftButton);
    QVERIFY(!restartedAt(1).isEmpty() && restartedAt(0).isEmpty());
    QCOMPARE(lines(*m_window), QStringList({u"PAP2 127.0.0.1 - 102 - phone 102"_s, u"M15: "_s}));
}

QTEST_MAIN(tst_FStatus)
#include "tst_FStatus.moc"
