#include <QTest>

class tst_files : public QObject {
    Q_OBJECT
};

QTEST_MAIN(tst_files)
#include "tst_files.moc"
