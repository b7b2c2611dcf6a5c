#include <QTest>

class tst_generate : public QObject {
    Q_OBJECT
};

QTEST_MAIN(tst_generate)
#include "tst_generate.moc"
