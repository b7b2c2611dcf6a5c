#include <QTest>

class tst_lookups : public QObject {
    Q_OBJECT
};

QTEST_MAIN(tst_lookups)
#include "tst_lookups.moc"
