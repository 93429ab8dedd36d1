#pragma once
// Table rows written on one line, programs of numbered lines, and the wire's bytes as tests
// write them.

#include "wire_chars.h"

#include <QTest>

using B = QByteArray;

inline const B Go = PromptSeq, Eot = WireChar::EOT + CR;
inline const B Dle(1, WireChar::DLE), Xon(1, WireChar::XON), Xoff(1, WireChar::XOFF);

// One row of a data table: its name, then one value for each column, in order.
template <class... T> void row(const char *name, const T &...v) {
    (QTest::newRow(name) << ... << v);
}

// "L1", "L2" ... each with `end` behind it.
inline B numberedLines(int n, const char *end = "\r\n") {
    B file;
    for (int i = 1; i <= n; ++i)
        file += "L" + B::number(i) + end;
    return file;
}
