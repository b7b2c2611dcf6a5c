#include <QTest>

class tst_writers : public QObject {
    Q_OBJECT
};

QTEST_MAIN(tst_writers)
#include "tst_writers.moc"
