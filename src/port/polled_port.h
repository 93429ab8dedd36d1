#pragma once
// A port that the event loop's yield follows: whether characters wait unread, and a word each
// time the caller hands characters over or takes them, so that the yield knows when a pass may
// sleep.

#include "comm.h"

#include <functional>

class PolledPort : public Comm {
public:
    virtual bool holdsInput() const = 0;
    virtual void setWorkListener(std::function<void()> listener) = 0;
};
