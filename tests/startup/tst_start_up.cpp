#include <QTest>

class tst_start_up : public QObject {
    Q_OBJECT
};

QTEST_MAIN(tst_start_up)
#include "tst_start_up.moc"
