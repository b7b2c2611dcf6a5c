#include <QTest>

class tst_merge : public QObject {
    Q_OBJECT
};

QTEST_MAIN(tst_merge)
#include "tst_merge.moc"
