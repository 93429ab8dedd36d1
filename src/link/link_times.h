#pragma once
// The intervals of the link's clock, in milliseconds. A wait ends at the clock's first tick, so
// the interval is the time-out of every wait that runs on it. Nothing puts an earlier interval
// back: the last one set holds for every wait that follows.

// The clock as it is made, kept while no known control type has set another.
inline constexpr int InitialIntervalMs = 10000;

// From start-up until the first transmission sets its own, by control type.
inline constexpr int StartupInterval303Ms = 5000;
inline constexpr int StartupInterval504Ms = 2000;
inline constexpr int StartupIntervalXonXoffMs = 50000;

// A transmission to a "303" or "504": the go-ahead after "R" and after each line.
inline constexpr int AnswerTimeoutMs = 5000;
// A stream to an "XonXoff" that its control has halted: the X-on that lets it go on.
inline constexpr int XonTimeoutMs = 5000;
// A stream's opening X-on, when Wait-Xon asks for one.
inline constexpr int FirstXonTimeoutMs = 60000;
