#include <QTest>

class tst_connection : public QObject {
    Q_OBJECT
};

QTEST_MAIN(tst_connection)
#include "tst_connection.moc"
