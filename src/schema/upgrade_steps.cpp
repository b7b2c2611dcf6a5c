#include "schema/upgrade_steps.h"

using namespace Qt::StringLiterals;

namespace velmora {

const QList<UpgradeStep>& upgradeSteps()
{
    // The texts are fixed, trailing blanks included; what an engine can't take as it stands, its Engine
    // adapts.
    static const QList<UpgradeStep> steps = {
        // The models get their generation module.
        {u"010110"_s,
         {
             u"ALTER TABLE EQUIPMENT ADD EQ_MODULE NVARCHAR(20) NOT NULL DEFAULT ''"_s,
             u"UPDATE EQUIPMENT SET EQ_MODULE = 'GRANDSTREAM' WHERE EQ_CODE = 'GXP2000'"_s,
             u"UPDATE EQUIPMENT SET EQ_MODULE = 'PAP2' WHERE EQ_CODE = 'PAP2'"_s,
             u"UPDATE EQUIPMENT SET EQ_MODULE = 'NONE' WHERE EQ_MODULE = '' OR EQ_MODULE IS NULL"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$MODULES', 'GRANDSTREAM', '')"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$MODULES', 'PAP2', '')"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$MODULES', 'NONE', '')"_s,
         }},
        // Label rows become system rows.
        {u"010120"_s,
         {
             u"UPDATE SYSTEM_PARAMETERS SET SY_CODE = '$$' + SY_CODE WHERE SY_SUBCODE LIKE 'L%' AND "
             "SY_CODE NOT LIKE '$$%'"_s,
         }},
        // More phone-book columns, flags and rights; two keys learn to cascade, so that the two renamed
        // parameters reach the values.
        {u"010130"_s,
         {
             u"ALTER TABLE PHONE_BOOK ADD BK_EXTNUM NVARCHAR(20) NOT NULL DEFAULT '', BK_FAX "
             "NVARCHAR(20) NOT NULL DEFAULT '', BK_GSM NVARCHAR(20) NOT NULL DEFAULT '', BK_MAIL "
             "NVARCHAR(100) NOT NULL DEFAULT ''"_s,
             u"UPDATE PHONE_BOOK SET BK_EXTNUM = '', BK_FAX = '', BK_GSM = '', BK_MAIL = ''"_s,
             u"INSERT INTO CREATION_FLAGS VALUES('W', 'Work In Progress', 'Y')"_s,
             u"INSERT INTO CREATION_FLAGS VALUES('D', 'Deleted', 'Y')"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('AUTHC', '*', '*')"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('AUTHM', '*', '*')"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$SUPERUSER', 'USERNAME', '*')"_s,
             u"ALTER TABLE PHONES_PARAMETERS DROP CONSTRAINT FK_PHOPAR_EQUPAR "_s,
             u"ALTER TABLE PHONES_PARAMETERS ADD CONSTRAINT FK_PHOPAR_EQUPAR FOREIGN KEY (EQ_CODE, "
             "PA_CODE) REFERENCES EQUIPMENT_PARAMETERS(EQ_CODE, PA_CODE) ON UPDATE CASCADE  "_s,
             u"ALTER TABLE COMPANY_PARAMETERS DROP CONSTRAINT FK_COMPAR_EQUPAR"_s,
             u"ALTER TABLE COMPANY_PARAMETERS ADD CONSTRAINT FK_COMPAR_EQUPAR FOREIGN KEY (EQ_CODE, "
             "PA_CODE) REFERENCES EQUIPMENT_PARAMETERS(EQ_CODE, PA_CODE) ON UPDATE CASCADE  "_s,
             u"UPDATE EQUIPMENT_PARAMETERS SET PA_CODE = 'Static_IP' WHERE PA_CODE = 'Static_Ip' AND "
             "EQ_CODE = 'PAP2'"_s,
             u"UPDATE EQUIPMENT_PARAMETERS SET PA_CODE = 'User_ID_1_' WHERE PA_CODE = 'User_Id_1_' "
             "AND EQ_CODE = 'PAP2'"_s,
         }},
        // Where the reboot finds address and password of a device.
        {u"010140"_s,
         {
             u"UPDATE SYSTEM_PARAMETERS SET SY_VALUE = 'Static_IP' WHERE SY_VALUE = 'Static_Ip' AND "
             "SY_CODE LIKE '%PAP2%'"_s,
             u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE LIKE '%GXP2000' AND SY_SUBCODE = '$$EPWD'"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$GXP2000', '$$EPWD', '2')"_s,
             u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE LIKE '%GXP2000' AND SY_SUBCODE LIKE '$$IP%'"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$GXP2000', '$$IP1', '9')"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$GXP2000', '$$IP2', '10')"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$GXP2000', '$$IP3', '11')"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$GXP2000', '$$IP4', '12')"_s,
             u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE LIKE '%PAP2' AND SY_SUBCODE = '$$EPWD'"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$PAP2', '$$EPWD', 'Admin_Passwd')"_s,
             u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE LIKE '%PAP2' AND SY_SUBCODE LIKE '$$IP%'"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$PAP2', '$$IP1', 'Static_IP')"_s,
         }},
    };
    return steps;
}

} // namespace velmora
