#include <QTest>

class tst_factory : public QObject {
    Q_OBJECT
};

QTEST_MAIN(tst_factory)
#include "tst_factory.moc"
