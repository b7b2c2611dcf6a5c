#include "schema/tables.h"

using namespace Qt::StringLiterals;

namespace velmora {

const QStringList& creationStatements()
{
    // The texts, odd spacing included, are what existing databases were made with. Do not change them.
    static const QStringList statements = {
        u"CREATE TABLE SYSTEM_PARAMETERS (SY_CODE nvarchar(50), SY_SUBCODE nvarchar(50), "
        "SY_VALUE nvarchar(255) NOT NULL , PRIMARY KEY (SY_CODE, SY_SUBCODE))"_s,
        u"CREATE TABLE CREATION_FLAGS (FL_CODE nvarchar(1), FL_DESC nvarchar(50) NOT NULL, "
        "FL_SYS nvarchar(1) NOT NULL, PRIMARY KEY (FL_CODE))"_s,
        u"CREATE TABLE LEVELS (LE_CODE nvarchar(1), LE_DESC nvarchar(50) NOT NULL, "
        "PRIMARY KEY (LE_CODE))"_s,
        u"CREATE TABLE RANGES (CO_CODE nvarchar(5), PH_CODE nvarchar(5) NOT NULL, "
        "PRIMARY KEY (CO_CODE, PH_CODE))"_s,
        u"CREATE TABLE TYPES (TY_CODE nvarchar(1), TY_DESC nvarchar(50) NOT NULL , "
        "PRIMARY KEY (TY_CODE))"_s,
        u"CREATE TABLE EQ_TEMP (PA_CODE nvarchar(50), PA_DESC nvarchar(255), "
        "PA_VALUE nvarchar(255), LE_CODE nvarchar(1), PRIMARY KEY (PA_CODE))"_s,
        u"CREATE TABLE COMPANY (CO_CODE nvarchar(5), CO_DESC nvarchar(50) NOT NULL , "
        "PRIMARY KEY (CO_CODE))"_s,
        u"CREATE TABLE EQUIPMENT (EQ_CODE nvarchar(10), EQ_DESC nvarchar(50) NOT NULL , "
        "EQ_MODULE nvarchar(20) NOT NULL , PRIMARY KEY (EQ_CODE))"_s,
        u"CREATE TABLE PHONES (CO_CODE nvarchar(5), PH_CODE nvarchar(5), EQ_CODE nvarchar(10), "
        "PH_DESC nvarchar(50) NOT NULL, PH_MAC nvarchar(12) NOT NULL, PRIMARY KEY (CO_CODE, "
        "PH_CODE)"
        ", CONSTRAINT FK_PHO_EQU FOREIGN KEY (EQ_CODE) REFERENCES EQUIPMENT (EQ_CODE) ON UPDATE CASCADE"
        ", CONSTRAINT FK_PHO_COM FOREIGN KEY (CO_CODE) REFERENCES COMPANY (CO_CODE) ON UPDATE CASCADE"
        ", CONSTRAINT FK_PHO_RAN FOREIGN KEY (CO_CODE, PH_CODE) REFERENCES RANGES (CO_CODE, "
        "PH_CODE) ON UPDATE CASCADE"
        ")"_s,
        u"CREATE TABLE EQUIPMENT_PARAMETERS (EQ_CODE nvarchar(10), PA_CODE nvarchar(50), "
        "PA_DESC nvarchar(255) NOT NULL, "
        "LE_CODE nvarchar(1) NOT NULL, PA_DEFAULT nvarchar(255) NOT NULL, "
        "TY_CODE nvarchar(1) NOT NULL, PA_VALUES nvarchar(255) NOT NULL, PRIMARY KEY (EQ_CODE, "
        "PA_CODE)"
        ", CONSTRAINT FK_EQUPAR_EQU FOREIGN KEY (EQ_CODE) REFERENCES EQUIPMENT(EQ_CODE) ON UPDATE CASCADE"
        ", CONSTRAINT FK_EQUPAR_LEV FOREIGN KEY (LE_CODE) REFERENCES LEVELS(LE_CODE) ON UPDATE CASCADE"
        ", CONSTRAINT FK_EQUPAR_TYP FOREIGN KEY (TY_CODE) REFERENCES TYPES(TY_CODE) ON UPDATE CASCADE"
        ")"_s,
        u"CREATE TABLE PHONES_PARAMETERS (CO_CODE nvarchar(5), EQ_CODE nvarchar(10), "
        "PH_CODE nvarchar(5), PA_CODE nvarchar(50), PA_VALUE nvarchar(255) NOT NULL"
        ", PRIMARY KEY (CO_CODE, EQ_CODE, PH_CODE, PA_CODE)"
        ", CONSTRAINT FK_PHOPAR_COM FOREIGN KEY (CO_CODE) REFERENCES COMPANY(CO_CODE) ON UPDATE CASCADE"
        ", CONSTRAINT FK_PHOPAR_EQUPAR FOREIGN KEY (EQ_CODE, "
        "PA_CODE) REFERENCES EQUIPMENT_PARAMETERS(EQ_CODE, PA_CODE) ON UPDATE CASCADE"
        ", CONSTRAINT FK_PHOPAR_PHO FOREIGN KEY (CO_CODE, PH_CODE) REFERENCES PHONES(CO_CODE, "
        "PH_CODE) ON UPDATE CASCADE"
        ", CONSTRAINT FK_PHOPAR_RAN FOREIGN KEY (CO_CODE, PH_CODE) REFERENCES RANGES(CO_CODE, "
        "PH_CODE) ON UPDATE CASCADE"
        ")"_s,
        u"CREATE TABLE COMPANY_PARAMETERS (CO_CODE nvarchar(5), EQ_CODE nvarchar(10), "
        "PA_CODE nvarchar(50) NOT NULL , PA_VALUE nvarchar(255) NOT NULL , PRIMARY KEY (CO_CODE, "
        "EQ_CODE, PA_CODE)"
        ", CONSTRAINT FK_COMPAR_EQU FOREIGN KEY (EQ_CODE) REFERENCES EQUIPMENT(EQ_CODE) ON UPDATE CASCADE"
        ", CONSTRAINT FK_COMPAR_COM FOREIGN KEY (CO_CODE) REFERENCES COMPANY(CO_CODE) ON UPDATE CASCADE"
        ", CONSTRAINT FK_COMPAR_EQUPAR FOREIGN KEY (EQ_CODE, "
        "PA_CODE) REFERENCES EQUIPMENT_PARAMETERS(EQ_CODE, PA_CODE) ON UPDATE CASCADE"
        ")"_s,
        u"CREATE TABLE PHONE_BOOK (CO_CODE nvarchar(5), BK_NUM nvarchar(50), "
        "BK_NAME nvarchar(50) NOT NULL , BK_FLAG nvarchar(1) NOT NULL "
        ", BK_EXTNUM nvarchar(20) NOT NULL "
        ", BK_FAX nvarchar(20) NOT NULL "
        ", BK_GSM nvarchar(20) NOT NULL "
        ", BK_MAIL nvarchar(100) NOT NULL "
        ", PRIMARY KEY (CO_CODE, BK_NUM)"
        ", CONSTRAINT FK_PHOBOO_CRF FOREIGN KEY (BK_FLAG) REFERENCES CREATION_FLAGS(FL_CODE) ON UPDATE "
        "CASCADE"
        ")"_s,
    };
    return statements;
}

const QStringList& copiedTables()
{
    static const QStringList tables = {
        u"SYSTEM_PARAMETERS"_s,
        u"CREATION_FLAGS"_s,
        u"LEVELS"_s,
        u"RANGES"_s,
        u"TYPES"_s,
        u"COMPANY"_s,
        u"EQUIPMENT"_s,
        u"PHONES"_s,
        u"EQUIPMENT_PARAMETERS"_s,
        u"PHONES_PARAMETERS"_s,
        u"COMPANY_PARAMETERS"_s,
        u"PHONE_BOOK"_s,
    };
    return tables;
}

QString privateStagingStatement()
{
    const QStringList staging = creationStatements().filter(u"CREATE TABLE EQ_TEMP "_s);
    return QString(staging.first()).replace("CREATE TABLE"_L1, "CREATE TEMPORARY TABLE"_L1);
}

} // namespace velmora
