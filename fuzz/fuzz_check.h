#pragma once
// What every fuzz target shares: a property that fails ends the run (libFuzzer keeps the
// input that did it), and the fuzz input taken apart by LLVM's data provider.

#include <QByteArray>
#include <QString>

#include <cstdio>
#include <cstdlib>
#include <fuzzer/FuzzedDataProvider.h>

#define FUZZ_CHECK(cond)                                                                           \
    do {                                                                                           \
        if (!(cond)) {                                                                             \
            std::fprintf(stderr, "property failed: %s (%s:%d)\n", #cond, __FILE__, __LINE__);      \
            std::abort();                                                                          \
        }                                                                                          \
    } while (0)

inline QByteArray takeBytes(FuzzedDataProvider &in, size_t most) {
    const std::string s = in.ConsumeRandomLengthString(most);
    return QByteArray(s.data(), qsizetype(s.size()));
}

inline QByteArray restBytes(FuzzedDataProvider &in) {
    const std::string s = in.ConsumeRemainingBytesAsString();
    return QByteArray(s.data(), qsizetype(s.size()));
}
