#include "generation/merge.h"

#include "common/macros.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The widths of EQ_TEMP. A character beyond 16 bits counts twice here: the table has the last word.
constexpr qsizetype codeWidth = 50;
constexpr qsizetype textWidth = 255;

/// The macro of a row, as in the statement that stages it: it ends with its field at the latest.
QString macroOf(const Parameter& parameter)
{
    for (const QString* text : {&parameter.code, &parameter.description, &parameter.value})
        if (text->contains(u'$') && text->contains("$$"_L1)) // hardly a text gets beyond the quick look
            return macroToken(*text + u'\'');
    return {};
}

bool comesBefore(const ParameterRow* one, const ParameterRow* other)
{
    return hasSmallerCode(one->parameter.code, other->parameter.code);
}

bool fits(const Parameter& parameter)
{
    return parameter.code.size() <= codeWidth && parameter.description.size() <= textWidth &&
           parameter.value.size() <= textWidth;
}

/// The row with its macro expanded; null where that can't be done here.
std::shared_ptr<const Parameter> expanded(const ParameterRow& row, const Phone& phone)
{
    const MacroReplacement replacement = macroReplacement(row.macro, phone);
    if (!replacement.text || row.parameter.code.contains(row.macro))
        return {};
    auto parameter = std::make_shared<Parameter>(row.parameter);
    parameter->description.replace(row.macro, *replacement.text);
    parameter->value.replace(row.macro, *replacement.text);
    return parameter;
}

} // namespace

ParameterRow::ParameterRow(QChar ofLevel, const Parameter& of, const QString& ofOtherModel)
    : parameter(of), level(ofLevel), otherModel(ofOtherModel), macro(macroOf(of))
{
}

bool hasSmallerCode(const QString& one, const QString& other)
{
    const auto [left, right] = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    if (left == one.end() || right == other.end())
        return left == one.end() && right != other.end();
    return left->isSurrogate() == right->isSurrogate() ? *left < *right : right->isSurrogate();
}

void sortForMerge(ParameterRows& rows)
{
    std::stable_sort(rows.begin(), rows.end(), [](const ParameterRow* one, const ParameterRow* other) {
        if (one->parameter.code != other->parameter.code)
            return comesBefore(one, other);
        return one->otherModel.isEmpty() && !other->otherModel.isEmpty();
    });
}

ParameterRows inOneList(const ParameterRows& first, const ParameterRows& second)
{
    ParameterRows all;
    all.reserve(first.size() + second.size());
    std::merge(first.begin(), first.end(), second.begin(), second.end(), std::back_inserter(all),
               comesBefore);
    return all;
}

Merge merge(const ParameterRows& rows, const Phone& phone)
{
    Merge result;
    result.parameters.reserve(rows.size());
    const QString* last = nullptr;
    for (const ParameterRow* row : rows) {
        MergedParameter next{row};
        if (!row->macro.isEmpty())
            next.own = expanded(*row, phone);
        const bool isRefused = !row->macro.isEmpty() && !next.own;
        if (isRefused || !fits(next.parameter()) || (last && *last == row->parameter.code)) {
            result.doubtful << row;
        } else {
            last = &row->parameter.code;
            result.parameters << std::move(next);
        }
    }
    return result;
}

} // namespace velmora
