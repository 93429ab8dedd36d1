#pragma once
// The clock of every wait on the link. Its tick sets TimedOut and nothing else.
// Enabling a running timer does not restart it; enabling a stopped one starts a full interval.

class LinkTimer {
public:
    virtual ~LinkTimer() = default;
    virtual void setInterval(int ms) = 0;
    virtual int interval() const = 0;
    virtual void setEnabled(bool on) = 0;
    virtual bool enabled() const = 0;
};
