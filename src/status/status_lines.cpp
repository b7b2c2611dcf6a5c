#include "status/status_lines.h"

#include "editor/transfer/verdict_texts.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

QString lineOf(QStringList fields)
{
    std::transform(fields.begin(), fields.end(), fields.begin(), onOneLine);
    return fields.join(u'\t');
}

} // namespace

QString lineOf(const PhoneStatus& status)
{
    return lineOf(QStringList{status.phone ? status.phone->code : u"-"_s,
                              status.phone ? status.phone->equipment : u"-"_s, status.file,
                              nameOf(status.state), QString::number(status.differences), status.lastRestart});
}

QString lineOf(const Difference& difference)
{
    const QString absent = u"(absent)"_s;
    return lineOf(QStringList{QString(), difference.parameter, difference.inFile.value_or(absent),
                              difference.now.value_or(absent)});
}

QString lineOf(const ExplainedParameter& parameter)
{
    return lineOf(QStringList{parameter.code, parameter.value.value_or(QString()), parameter.level,
                              nameOf(parameter.source), parameter.stored, parameter.remarks.join("; "_L1)});
}

} // namespace velmora
