// Compact tables for data-driven tests.
#pragma once

#include <QTest>

namespace velmora {

/// Declares the columns of a table of test data.
template <typename... Types, typename... Names> void columns(Names... names)
{
    (QTest::addColumn<Types>(names), ...);
}

inline QString field(const char* text)
{
    return QString::fromUtf8(text);
}

template <typename Field> const Field& field(const Field& value)
{
    return value;
}

/// Adds a row. A plain literal is a QString.
template <typename... Fields> void row(const char* title, const Fields&... fields)
{
    (QTest::newRow(title) << ... << field(fields));
}

} // namespace velmora
