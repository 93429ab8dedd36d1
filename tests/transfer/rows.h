#pragma once
// Table rows written on one line, programs of numbered lines, and the link's characters.
#include <QTest>

using B = QByteArray;

inline const B Go("\x10\x37"), Eot("\x04\r"), Xon("\x11");

template <class... T> void Row(const char *name, const T &...v) {
    (QTest::newRow(name) << ... << v);
}

inline B Lines(int n, const char *end = "\r\n") {
    B file;
    for (int i = 1; i <= n; ++i)
        file += "L" + B::number(i) + end;
    return file;
}
