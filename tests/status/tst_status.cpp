#include "support/test_database.h"
#include <QTest>
namespace velmora { class tst_status : public QObject { Q_OBJECT }; }
QTEST_GUILESS_MAIN(velmora::tst_status)
#include "tst_status.moc"
