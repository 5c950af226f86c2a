#pragma once

#include <HostSupport/MessageHandler.h>

#include <QTest>

namespace zvtest {

/// A message handler that counts how many of its kind are alive.
class Messages final : public MessageHandler
{
public:
    Messages() { ++alive; }
    ~Messages() override { --alive; }
    void message(const char* text) override { QFAIL(text); }

    static inline int alive = 0;
};

} // namespace zvtest
