#include <QTest>

class tst_tables : public QObject {
    Q_OBJECT
};

QTEST_MAIN(tst_tables)
#include "tst_tables.moc"
