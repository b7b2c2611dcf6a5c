#include <QTest>

class tst_FGenerate : public QObject {
    Q_OBJECT
};

QTEST_MAIN(tst_FGenerate)
#include "tst_FGenerate.moc"
