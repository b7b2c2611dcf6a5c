#include <QTest>

class tst_cli : public QObject {
    Q_OBJECT
};

QTEST_MAIN(tst_cli)
#include "tst_cli.moc"
