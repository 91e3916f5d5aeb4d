// Tables of results for the nuvobase tests: each row holds the expression as written, what it gave and
// what it must give, and a failure names the row.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <type_traits>

#include "nuvobase/clsstring.h"

namespace nuvobase_test {

// The bytes of s, embedded NULs included.
inline std::string Bytes(const nuvobase::clsString& s) {
    return std::string(s.Text(), size_t(s.Size()));
}

template <class T> struct Row {
    const char* expression;
    T got, want;
};

template <class T> void CheckRows(std::initializer_list<Row<T>> rows) {
    for (const Row<T>& row : rows) {
        SCOPED_TRACE(row.expression);
        if constexpr (std::is_floating_point_v<T>)
            EXPECT_DOUBLE_EQ(row.got, row.want);
        else
            EXPECT_EQ(row.got, row.want);
    }
}

} // namespace nuvobase_test

// A row of a value, and a row of the bytes of a clsString.
#define ROW(expression, want)                                                                                \
    { #expression, expression, want }
#define TEXT(expression, want)                                                                               \
    { #expression, nuvobase_test::Bytes(expression), want }
