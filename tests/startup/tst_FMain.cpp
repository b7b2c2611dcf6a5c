#include <QTest>

class tst_FMain : public QObject {
    Q_OBJECT
};

QTEST_MAIN(tst_FMain)
#include "tst_FMain.moc"
